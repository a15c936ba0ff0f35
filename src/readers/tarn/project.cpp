#include "readers/tarn/project.h"

#include "files/paths.h"
#include "readers/tarn/module_location.h"
#include "readers/tarn/source_notes.h"

namespace velkor {

namespace {

constexpr std::string_view kOutputKey = "Outasmsrccmb0";

// As the leading number of a text: blanks, a sign, digits up to the first other character.
bool IsNonZeroNumber(std::string_view text) {
  size_t i = text.find_first_not_of(" \t\n\v\f\r");
  if (i == std::string_view::npos) {
    return false;
  }
  if (text[i] == '+' || text[i] == '-') {
    ++i;
  }
  while (i < text.size() && text[i] == '0') {
    ++i;
  }
  return i < text.size() && text[i] >= '1' && text[i] <= '9';
}

}  // namespace

StkProject::StkProject(Host& host, StkReporter& reporter)
    : host_(host), reporter_(reporter), modules_(StkStringList::IgnoringCase(host.codePage)) {}

bool StkProject::Load(std::string_view path) {
  path_ = path;
  OpenResult<InputFile> opened = host_.files.OpenForRead(path_);
  if (!opened.file) {
    ReportUnreadable(opened.failure);
    return false;
  }
  const ProfileFile profile(host_.codePage, *opened.file);
  opened.file.reset();
  if (profile.CutShort()) {
    ReportUnreadable(FileFailure::kOther);
    return false;
  }

  const std::string directory = profile.GetString("ProjectManager", "Path");
  if (directory.empty()) {
    ReportIllegal();
    return false;
  }
  projectDirectory_ = AbsoluteAgainst(directory, DirectoryPart(path_, host_.codePage), host_);
  host_.paths.SetProject(projectDirectory_, path_);

  const std::string family(reporter_.Messages().Text(MessageKey::kFamilyName));
  const std::string mode = profile.GetString("Options." + family, "BuildMode");
  const std::string section = "Options.CC" + family + " " + (mode.empty() ? "0" : mode);
  const StkProjectFile projectFile{path_, projectDirectory_, profile.GetString(section, kOutputKey),
                                   section, profile};
  ReadModules(projectFile);
  ReadOptions(projectFile);
  return true;
}

void StkProject::ReportUnreadable(FileFailure failure) {
  if (failure == FileFailure::kNotFound) {
    reporter_.ShowFatal(MessageKey::kE9300, {MessageFile{path_}});
  } else if (reporter_.OpenedFromCommandLine()) {
    reporter_.ShowFatal(MessageKey::kE9301, {MessageFile{path_}});
  } else {
    reporter_.ShowWarning(MessageKey::kW9401, {MessageFile{path_}});
  }
}

void StkProject::ReportIllegal() {
  if (reporter_.OpenedFromCommandLine()) {
    reporter_.ShowFatal(MessageKey::kE9302, {MessageFile{path_}});
  } else {
    reporter_.ShowWarning(MessageKey::kW9440, {MessageFile{path_}});
  }
}

void StkProject::ReadModules(const StkProjectFile& projectFile) {
  int number = 1;
  for (; number <= StkProjectFile::kMaxSources; ++number) {
    const std::string source =
        projectFile.profile.GetString("SrcFile", "Source" + std::to_string(number));
    if (source.empty()) {
      break;
    }
    sources_.Add(AbsoluteAgainst(source, projectDirectory_, host_));
    if (const auto modulePath = LocateModuleFile(source, projectFile, host_)) {
      modules_.Add(*modulePath);
    }
  }
  notes_ = SourceNotes(projectFile, static_cast<uint32_t>(number), reporter_.Messages());
}

void StkProject::ReadOptions(const StkProjectFile& projectFile) {
  const auto isOn = [&projectFile](std::string_view key) {
    return IsNonZeroNumber(projectFile.profile.GetString(projectFile.optionsSection, key));
  };
  staticModel_ = isOn("Staticmodelchk");
  libraryCheck_ = isOn("Librarychk");
  floatingPoint_ = isOn("Floatingpoint");
}

std::string StkProject::SystemFilePath() const {
  return ReplaceExtension(path_, ".psg", host_.codePage);
}

}  // namespace velkor
