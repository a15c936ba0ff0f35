#pragma once

#include <string>

namespace velkor::ui {

// What the program says about itself.
struct VersionTexts {
  std::string productName = "velkor";
  std::string versionSource;  // version word, blank, date in brackets
};

// Of this build.
VersionTexts ProgramVersion();

}  // namespace velkor::ui
