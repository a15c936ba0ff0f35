#include "readers/gcc/gcc_module_reader.h"

#include <optional>
#include <utility>

#include "readers/gcc/link_time_sets.h"
#include "readers/gcc/unit_recorder.h"

namespace velkor {

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
  sources_.BeginUnit(path_);
  const auto isNewer = [&](std::string_view source) {
    const std::optional<int64_t> changed = sources_.ModifiedAt(source);
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
