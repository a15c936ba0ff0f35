#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/host.h"
#include "platform/profile_file.h"

namespace velkor {

// What is read of a project file while its module list is worked out; gone afterwards.
struct StkProjectFile {
  static constexpr int kMaxSources = 2048;

  std::string path;
  std::string projectDirectory;  // absolute
  std::string outputSetting;     // project-wide; possibly empty
  std::string optionsSection;
  const ProfileFile& profile;
};

// The module path of a source of the project; none when it is not a C source.
std::optional<std::string> LocateModuleFile(std::string_view sourceName,
                                            const StkProjectFile& projectFile, Host& host);

}  // namespace velkor
