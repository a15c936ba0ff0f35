#include "readers/tarn/library_table.h"

#include "files/paths.h"
#include "files/spec_language.h"
#include "files/text_reader.h"
#include "platform/limits.h"
#include "readers/tarn/host_spelling.h"

namespace velkor {

namespace {

constexpr std::string_view kResourceType = "LIBSIZE";
constexpr std::string_view kProductName = "velkor";

MessageKey NameKey(LibraryTableKind kind) {
  return kind == LibraryTableKind::kStandard ? MessageKey::kStandardTableName
                                             : MessageKey::kRuntimeTableName;
}

std::string_view Suffix(LibraryTableKind kind, const StkProject& project) {
  if (kind == LibraryTableKind::kRuntimeHelpers) {
    return project.StaticModel() ? "rsm" : "r";
  }
  if (project.StaticModel()) {
    return "sm";
  }
  return project.FloatingPoint() ? "f" : "";
}

std::string TablePath(std::string_view suffix, const Host& host, const StkReporter& reporter) {
  const std::string name =
      reporter.Messages().FormatMessageText(MessageKey::kTableFilePattern, {suffix});
  const std::string_view file = FileNamePart(name, host.codePage);
  if (host.dataFolder.empty()) {
    return InstalledPath(file, host);
  }
  return HostSpelling(Join(host.dataFolder, file, host.codePage), host);
}

// False when only a part of the table could be read.
bool ReadNames(StkLibraryTable& table, const CodePage& codePage, Event& stopEvent,
               RuntimeNameSet& set) {
  const std::unique_ptr<StkByteSource> source = table.Open({});
  if (!source) {
    return true;
  }
  StkTextReader reader(*source, &stopEvent);
  TextLine line;
  while (reader.ReadLine(line, kTextBufferSize) && !reader.CutShort() && !reader.Stopped()) {
    const std::string_view name = LibraryTableName(line.text, codePage);
    if (!name.empty()) {
      set.names.Insert(name);
    }
  }
  return !reader.CutShort();
}

}  // namespace

StkLibraryTable::StkLibraryTable(LibraryTableKind kind, const StkProject& project, Host& host,
                                 StkReporter& reporter)
    : StkSpecReader(SpecificationKind::kLibraryTable,
                    TablePath(Suffix(kind, project), host, reporter), host, reporter),
      resourceId_(static_cast<uint32_t>(NameKey(kind))),
      displayName_(reporter.Messages().Text(NameKey(kind))) {}

std::unique_ptr<StkByteSource> StkLibraryTable::Open(const FileSystem::GiveUp& /*giveUp*/) {
  std::unique_ptr<StkByteSource> file = usesBuiltIn_ ? nullptr : OpenFile();
  if (file != nullptr) {
    return file;
  }
  usesBuiltIn_ = true;
  if (!noMissingWarning_ && MayBeMissed()) {
    reporter_.PostWarning(MessageKey::kW9427, {MessageFile{Path()}, kProductName, displayName_});
  }
  const std::optional<std::string_view> builtIn = host_.resources.Find(kResourceType, resourceId_);
  return builtIn ? std::make_unique<StkMemorySource>(*builtIn) : nullptr;
}

// No table needs to be installed; a folder for them says that they are.
bool StkLibraryTable::MayBeMissed() const {
  return !host_.dataFolder.empty() ||
         host_.files.IsDirectory(DirectoryPart(Path(), host_.codePage));
}

std::vector<std::string> LibraryTablePaths(const Host& host, const StkReporter& reporter) {
  std::vector<std::string> paths;
  for (const std::string_view suffix : {"", "f", "sm", "r", "rsm"}) {
    paths.push_back(TablePath(suffix, host, reporter));
  }
  return paths;
}

RuntimeNameSet LoadRuntimeNames(const StkProject& project, Host& host, StkReporter& reporter,
                                Event& stopEvent) {
  RuntimeNameSet set;
  StkLibraryTable table(LibraryTableKind::kRuntimeHelpers, project, host, reporter);
  table.SetNoMissingWarning();
  if (!ReadNames(table, host.codePage, stopEvent, set)) {
    table.UseBuiltIn();
    ReadNames(table, host.codePage, stopEvent, set);
  }
  set.builtIn = table.UsesBuiltIn();
  return set;
}

}  // namespace velkor
