#include "readers/tarn/module_location.h"

#include "files/paths.h"
#include "readers/tarn/host_spelling.h"

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

std::optional<std::string> LocateModuleFile(std::string_view sourceName,
                                            const StkProjectFile& projectFile, Host& host) {
  const CodePage& page = host.codePage;
  if (!page.EqualIgnoreCase(Extension(sourceName, page), kSourceExtension)) {
    return std::nullopt;
  }
  const std::string source = AbsoluteAgainst(sourceName, projectFile.projectDirectory, host);
  const std::string_view sourceFile = FileNamePart(source, page);
  std::string output =
      AbsoluteAgainst(OutputSetting(sourceFile, projectFile), projectFile.projectDirectory, host);
  if (host.files.IsDirectory(output, Spelling::kOfProject)) {
    output = Join(output, ReplaceExtension(sourceFile, kModuleExtension, page), page);
  } else {
    const std::string_view extension = Extension(output, page);
    if (extension.empty()) {
      output += kModuleExtension;
    } else if (extension == ".") {
      output.pop_back();
    }
  }
  return HostSpelling(std::move(output), host);
}

}  // namespace velkor
