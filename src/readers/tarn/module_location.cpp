#include "files/paths.h"
#include "readers/tarn/host_spelling.h"
#include "readers/tarn/project.h"

namespace velkor {

namespace {

constexpr std::string_view kSourceExtension = ".c";
constexpr std::string_view kModuleExtension = ".asm";

// The output setting of one source, else that of the project, else the project's folder.
std::string OutputSetting(std::string_view sourceFile, const StkProjectFile& projectFile) {
  const std::string section = projectFile.optionsSection + " " + std::string(sourceFile);
  std::string setting = projectFile.profile.GetString(section, "Outasmsrccmb0");
  if (setting.empty()) {
    setting = projectFile.outputSetting;
  }
  return setting.empty() ? projectFile.projectDirectory : setting;
}

}  // namespace

bool StkProject::LocateModuleFile(std::string_view sourceName, const StkProjectFile& projectFile,
                                  std::string& modulePath) {
  const CodePage& page = host_.codePage;
  if (!page.EqualIgnoreCase(Extension(sourceName, page), kSourceExtension)) {
    return false;
  }
  const std::string source = AbsoluteAgainst(sourceName, projectFile.projectDirectory, host_);
  const std::string_view sourceFile = FileNamePart(source, page);
  std::string output =
      AbsoluteAgainst(OutputSetting(sourceFile, projectFile), projectFile.projectDirectory, host_);
  if (host_.files.IsDirectory(output)) {
    output = Join(output, ReplaceExtension(sourceFile, kModuleExtension, page), page);
  } else {
    const std::string_view extension = Extension(output, page);
    if (extension.empty()) {
      output += kModuleExtension;
    } else if (extension == ".") {
      output.pop_back();
    }
  }
  modulePath = HostSpelling(std::move(output), host_);
  return true;
}

}  // namespace velkor
