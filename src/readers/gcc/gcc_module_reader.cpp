#include "readers/gcc/gcc_module_reader.h"

#include <optional>
#include <utility>

#include "platform/host_path.h"
#include "platform/path_text.h"
#include "readers/gcc/link_time_sets.h"
#include "readers/gcc/unit_recorder.h"

namespace velkor {
namespace {

// Finds the sources that a compiler was told relative to the folder in which it ran: the folder of
// the call graph or one above it, the same for all sources of one unit.
class SourceFinder {
 public:
  SourceFinder(const Host& host, std::string_view graphPath)
      : files_(host.files), codePage_(host.codePage), folder_(FolderPart(graphPath, codePage_)) {}

  std::optional<int64_t> ModifiedAt(std::string_view source) {
    if (IsRootedOnHost(source)) {
      return files_.ModifiedAt(source);
    }
    const bool isForeign = !HostHasDrives() && source.find('\\') != source.npos;
    if (source.empty() || source.front() == '<' || isForeign) {
      return std::nullopt;
    }
    if (isFound_) {
      return files_.ModifiedAt(std::string(folder_).append(source));
    }
    for (std::string folder = folder_; !folder.empty();
         folder.resize(FolderPart(folder.substr(0, folder.size() - 1), codePage_).size())) {
      if (const auto time = files_.ModifiedAt(std::string(folder).append(source))) {
        isFound_ = true;
        folder_ = folder;
        return time;
      }
    }
    return std::nullopt;
  }

 private:
  FileSystem& files_;
  const CodePage& codePage_;
  std::string folder_;
  bool isFound_ = false;
};

}  // namespace

FileFailure GccModuleReader::Open(size_t module) {
  module_ = module;
  path_ = units_.GraphPath(module);
  OpenResult<InputFile> opened = host_.files.OpenForRead(path_);
  file_ = std::move(opened.file);
  return opened.failure;
}

void GccModuleReader::Read(Event& stopEvent) {
  recording_.Clear();
  graph_.Read(*std::exchange(file_, nullptr));
  stopped_ = stopEvent.Test();
  if (stopped_) {
    return;
  }
  UnitFiles files;
  files.graphPath = path_;
  files.graph = graph_.Bytes();
  files.isLinkTime = IsLinkTimeGraph(path_);
  const std::string objectPath = units_.ObjectOf(path_);
  if (!objectPath.empty()) {
    const OpenResult<InputFile> opened = host_.files.OpenForRead(objectPath);
    if (opened.file) {
      object_.Read(*opened.file);
      files.objectPath = objectPath;
      files.object = object_.Bytes();
    }
    if (!opened.file || object_.IsCutShort()) {
      NoteNotRead(objectPath);
    }
  }
  RecordUnit(files, reporter_.Messages(), recording_);
  if (graph_.IsCutShort()) {
    recording_.isWhole = false;
    NoteNotRead(path_);
  }
  NoteNewerSource();
}

void GccModuleReader::NoteNotRead(const std::string& file) {
  recording_.notes.push_back(
      {.rule = file == path_ ? "module-not-whole" : "object-not-whole",
       .text = std::string(reporter_.Messages().Text(MessageKey::kNoteNotRead)),
       .file = file,
       .function = {}});
}

// One is enough to say so.
void GccModuleReader::NoteNewerSource() {
  const std::optional<int64_t> written = host_.files.ModifiedAt(path_);
  if (!written) {
    return;
  }
  SourceFinder sources(host_, path_);
  const auto isNewer = [&](std::string_view source) {
    const std::optional<int64_t> changed = sources.ModifiedAt(source);
    return changed && *changed > *written;
  };
  std::string_view newer;
  if (!recording_.isLinkTime && isNewer(recording_.title)) {
    newer = recording_.title;
  }
  for (uint32_t i = 0; i < recording_.files.size() && newer.empty(); ++i) {
    newer = isNewer(recording_.files[i]) ? recording_.files[i] : std::string_view();
  }
  if (!newer.empty()) {
    recording_.notes.push_back(
        {.rule = "stale-input",
         .text = reporter_.Messages().FormatMessageText(MessageKey::kNoteStaleSource, {newer}),
         .file = path_,
         .function = {}});
  }
}

ModuleReader::Entered GccModuleReader::Enter(FunctionDatabase database) {
  if (!stopped_) {
    units_.AddUnit(module_, recording_, database.functions);
  }
  if (stopped_ || !recording_.isWhole) {
    reporter_.PostLog(MessageKey::kReadingAborted, {path_});
    return stopped_ ? Entered::kStopped : Entered::kFailed;
  }
  return Entered::kWhole;
}

}  // namespace velkor
