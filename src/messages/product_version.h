#pragma once

#include <string>
#include <string_view>

namespace velkor {

// Which velkor this is, for every text that says so. The numbers stand in the project's main
// CMakeLists.txt alone.
std::string_view ProductVersion();  // "1.0.0"
std::string_view ProductDate();     // of its release, "2026-11-24"
std::string ProductNameAndVersion();  // "velkor 1.0.0": the same for every build of a version

// "velkor 1.0.0 (4f2c1ab9d03e)". commit: what the program was built from; empty where that is not
// known, and then left out.
std::string VersionLine(std::string_view commit);

}  // namespace velkor
