#include <utility>

#include "core/function_text.h"
#include "document/document.h"
#include "document/output_path.h"
#include "document/system_file_merge.h"

namespace velkor {

namespace {

// Others may save again and again before this one gets its turn.
constexpr int kMostMergesInARow = 100;

}  // namespace

void CStkDoc::SaveSystemFile() {
  if (!HasFunctionsToWrite() || input_->SystemFilePath().empty()) {
    return;
  }
  const StkJob* running = jobs_.Get(JobKind::kSpecWrite);
  if (running != nullptr && !running->EndPosted()) {
    systemSaveDue_ = true;
    return;
  }
  EndSpecWrite();
  systemSaveDue_ = false;
  StartWriting(StkSpecWriter::Mode::kAutomatic, input_->SystemFilePath());
}

bool CStkDoc::SaveSpecFile(std::string_view path) {
  if (!HasFunctionsToWrite()) {
    return false;
  }
  std::string target(path);
  EndDueSave();
  StartWriting(StkSpecWriter::Mode::kUser, std::move(target));
  return true;
}

bool CStkDoc::MayWriteTo(const std::string& path, const std::vector<std::string>& inputs) {
  std::vector<std::string> paths = input_ ? ProtectedPaths(true) : ProgramFiles(host_);
  paths.insert(paths.end(), inputs.begin(), inputs.end());
  return CheckOutputPath(path, paths, host_, reporter_);
}

void CStkDoc::SpecWriteStopped() {
  const bool automatic = jobs_.Get<StkSpecWriteJob>()->IsAutomatic();
  EndSpecWrite();
  if (!automatic && systemSaveDue_) {
    SaveSystemFile();
  }
}

void CStkDoc::SpecWriteFinished() {
  EndSpecWrite();
  if (systemSaveDue_) {
    SaveSystemFile();
  }
}

bool CStkDoc::SaveCallChains(std::string_view path, const StkFunction& function, bool allChains,
                             StkChainReport::Format format) {
  if (!HasFunctionsToWrite()) {
    return false;
  }
  if (StkJob* running = jobs_.Get(JobKind::kChainSave)) {
    running->Wait();
  }
  jobs_.Start(std::make_unique<StkChainReportJob>(
      ChainReportOrder{std::string(path), function,
                       allChains ? ChainMode::kAll : ChainMode::kMaximum, format,
                       ProtectedPaths(true)},
      host_, reporter_, mainWindow_));
  return true;
}

void CStkDoc::ChainSaveFinished() {
  anyWritingFailed_ =
      anyWritingFailed_ || jobs_.Get<StkChainReportJob>()->End() == WorkEnd::kFailed;
  jobs_.Empty(JobKind::kChainSave);
}

bool CStkDoc::CanKeepAdjustments() {
  const bool can = input_ == nullptr || !input_->SystemFilePath().empty();
  if (!can) {
    reporter_.ShowWarning(MessageKey::kW9469, {MessageFile{input_->Path()}});
  }
  return can;
}

bool CStkDoc::CanStateHere(const StkFunction& function) {
  const BroughtStatement* brought = functionTable_->Brought(function);
  if (brought != nullptr) {
    reporter_.ShowWarning(MessageKey::kW9468,
                          {FunctionSpecName(function, host_.codePage),
                           MessageFile{brought->place.path}, MessageLine{brought->place.line}});
  }
  return brought == nullptr;
}

bool CStkDoc::HasFunctionsToWrite() const {
  return input_ && functionTable_ && functionTable_->Count() != 0 && !BelongsToJob();
}

void CStkDoc::StartWriting(StkSpecWriter::Mode mode, std::string path) {
  const bool automatic = mode == StkSpecWriter::Mode::kAutomatic;
  std::vector<std::string> keptLines;
  for (const StaleStatement* stale : LinesToKeep()) {
    keptLines.push_back(stale->text);
  }
  jobs_.Start(std::make_unique<StkSpecWriteJob>(
      SpecWriteOrder{mode, std::move(path), ProtectedPaths(!automatic), seenSystemFile_,
                     std::move(keptLines)},
      *functionTable_, host_, reporter_, mainWindow_));
}

std::vector<const StaleStatement*> CStkDoc::LinesToKeep() const {
  std::vector<const StaleStatement*> lines;
  for (const StaleStatement& stale : stale_) {
    if (stale.function == nullptr || functionTable_->Kept(*stale.function).None()) {
      lines.push_back(&stale);
    }
  }
  return lines;
}

void CStkDoc::EndSpecWrite() {
  auto* job = jobs_.Get<StkSpecWriteJob>();
  if (job == nullptr) {
    return;
  }
  job->Wait();
  const WorkEnd end = job->End();
  const bool automatic = job->IsAutomatic();
  const std::optional<uint64_t> written = job->Written();
  const std::optional<ChangedSystemFile> changed = job->Changed();
  jobs_.Empty(JobKind::kSpecWrite);
  if (changed && mergesInARow_ < kMostMergesInARow) {
    ++mergesInARow_;
    systemSaveDue_ = true;
    TakeChangedSystemFile(*changed);
    return;
  }
  mergesInARow_ = 0;
  if (changed) {
    reporter_.PostWarning(MessageKey::kW9402, {MessageFile{input_->SystemFilePath()}});
  }
  anyWritingFailed_ = anyWritingFailed_ || end == WorkEnd::kFailed;
  if (!automatic) {
    return;
  }
  if (end == WorkEnd::kCompleted) {
    seenSystemFile_ = {written, std::nullopt};
    unsaved_.clear();
  }
  systemSaveDue_ = systemSaveDue_ || end == WorkEnd::kStopped;
  if (end != WorkEnd::kStopped) {
    SetSystemSaveFailed(end == WorkEnd::kFailed);
  }
}

void CStkDoc::TakeChangedSystemFile(const ChangedSystemFile& changed) {
  if (StkJob* report = jobs_.Get(JobKind::kChainSave)) {
    report->Wait();  // it works on the functions
  }
  StopReadings();
  SystemFileMerge merge;
  if (changed.text) {
    merge = MergeSystemFile(*changed.text, input_->SystemFilePath(), unsaved_, *functionTable_,
                            *rootList_, reporter_);
    if (merge.read) {
      stale_ = std::move(merge.stale);
    }
  }
  const std::optional<uint64_t> content = changed.fingerprint;
  seenSystemFile_ = merge.whole ? StkSystemFileKeeper::Seen{content, std::nullopt}
                                : StkSystemFileKeeper::Seen{std::nullopt, content};
  if (merge.changed && !discarding_) {
    UpdateAllViews(nullptr, merge.calleesChanged ? HINT_STRUCTURE : HINT_SIZES);
  }
}

// Until no automatic save runs or is due. One that fails has said so and is not tried again.
void CStkDoc::EndDueSave() {
  EndSpecWrite();
  for (int i = 0; systemSaveDue_ && i <= kMostMergesInARow; ++i) {
    SaveSystemFile();
    EndSpecWrite();
  }
  systemSaveDue_ = false;
}

bool CStkDoc::SettleSystemSave() {
  EndSpecWrite();
  systemSaveDue_ = systemSaveDue_ || systemSaveFailed_;
  EndDueSave();
  return !systemSaveFailed_;
}

void CStkDoc::SetSystemSaveFailed(bool failed) {
  if (std::exchange(systemSaveFailed_, failed) != failed) {
    UpdateAllViews(nullptr, HINT_SAVED);
  }
}

// Of a file of the user's choice; the stk system file is itself one of the others.
std::vector<std::string> CStkDoc::ProtectedPaths(bool withSystemFile) {
  std::vector<std::string> paths{input_->Path()};
  const auto add = [&paths](const auto& more) {
    paths.insert(paths.end(), more.begin(), more.end());
  };
  add(input_->Modules());
  add(input_->RelatedFiles());
  add(filesInMemory_);
  add(ProgramFiles(host_));
  if (withSystemFile) {
    const std::string systemFile = input_->SystemFilePath();
    paths.push_back(systemFile);
    add(StkSystemFileKeeper::PossibleCopies(systemFile, host_));
  }
  return paths;
}

}  // namespace velkor
