#include "readers/tarn/library_table.h"

#include "files/paths.h"
#include "files/text_reader.h"
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

std::string TablePath(LibraryTableKind kind, const StkProject& project, const Host& host,
                      const StkReporter& reporter) {
  const std::string name =
      reporter.Messages().FormatMessageText(MessageKey::kTableFilePattern, {Suffix(kind, project)});
  if (host.dataFolder.empty()) {
    return ProgramDataPath(name, host);
  }
  return HostSpelling(Join(host.dataFolder, FileNamePart(name, host.codePage), host.codePage),
                      host);
}

size_t SkipWhiteSpace(std::string_view text, size_t position, const CodePage& codePage) {
  while (position < text.size() && codePage.IsBlank(text, position)) {
    position += codePage.CharLength(text, position);
  }
  return position;
}

// The function name of a table's line, brackets removed; empty for a line that names none.
std::string_view TableLineName(std::string_view line, const CodePage& codePage) {
  const size_t start = SkipWhiteSpace(line, 0, codePage);
  size_t end = start;
  while (end < line.size() && line[end] != ',' && !codePage.IsBlank(line, end)) {
    end += codePage.CharLength(line, end);
  }
  std::string_view word = line.substr(start, end - start);
  if (word.empty() || word.front() == '#') {
    return {};
  }
  if (word.front() != '[') {
    return word;
  }
  word.remove_prefix(1);
  size_t close = 0;
  while (close < word.size() && word[close] != ']') {
    close += codePage.CharLength(word, close);
  }
  return word.substr(0, close);
}

// False when only a part of the table could be read.
bool ReadNames(StkLibraryTable& table, const CodePage& codePage, RuntimeNameSet& set) {
  const std::unique_ptr<StkByteSource> source = table.Open();
  if (!source) {
    return true;
  }
  StkTextReader reader(*source);
  TextLine line;
  while (reader.ReadLine(line, StkSpecReader::kLineBufferSize) && !reader.CutShort()) {
    const std::string_view name = TableLineName(line.text, codePage);
    if (!name.empty()) {
      set.names.Insert(name);
    }
  }
  return !reader.CutShort();
}

}  // namespace

StkLibraryTable::StkLibraryTable(LibraryTableKind kind, const StkProject& project, Host& host,
                                 StkReporter& reporter)
    : StkSpecReader(SpecificationKind::kLibraryTable, TablePath(kind, project, host, reporter),
                    host, reporter),
      resourceId_(static_cast<uint32_t>(NameKey(kind))),
      displayName_(reporter.Messages().Text(NameKey(kind))) {}

std::unique_ptr<StkByteSource> StkLibraryTable::Open() {
  std::unique_ptr<StkByteSource> file = usesBuiltIn_ ? nullptr : OpenFile();
  if (file != nullptr) {
    return file;
  }
  usesBuiltIn_ = true;
  if (!noMissingWarning_) {
    reporter_.PostWarning(MessageKey::kW9427, {MessageFile{Path()}, kProductName, displayName_});
  }
  const std::optional<std::string_view> builtIn = host_.resources.Find(kResourceType, resourceId_);
  return builtIn ? std::make_unique<StkMemorySource>(*builtIn) : nullptr;
}

RuntimeNameSet LoadRuntimeNames(const StkProject& project, Host& host, StkReporter& reporter) {
  RuntimeNameSet set;
  StkLibraryTable table(LibraryTableKind::kRuntimeHelpers, project, host, reporter);
  table.SetNoMissingWarning();
  if (!ReadNames(table, host.codePage, set)) {
    table.UseBuiltIn();
    ReadNames(table, host.codePage, set);
  }
  set.builtIn = table.UsesBuiltIn();
  return set;
}

}  // namespace velkor
