#include <utility>

#include "core/function_text.h"
#include "document/document.h"

namespace velkor {

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
  SettleSystemSave();
  StartWriting(StkSpecWriter::Mode::kUser, std::move(target));
  return true;
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
                       allChains ? ChainMode::kAll : ChainMode::kMaximum, format, InputPaths(true)},
      host_, reporter_, mainWindow_));
  return true;
}

void CStkDoc::ChainSaveFinished() {
  anyWritingFailed_ = anyWritingFailed_ || jobs_.Get<StkChainReportJob>()->End() == JobEnd::kFailed;
  jobs_.Empty(JobKind::kChainSave);
}

bool CStkDoc::CanKeepAdjustments() {
  const bool can = input_ == nullptr || !input_->SystemFilePath().empty();
  if (!can) {
    reporter_.ShowWarning(MessageKey::kW9467, {MessageFile{input_->Path()}});
  }
  return can;
}

bool CStkDoc::CanStateHere(const StkFunction& function) {
  const BroughtStatement* brought = functionTable_->Brought(function);
  if (brought != nullptr) {
    reporter_.ShowWarning(MessageKey::kW9468,
                          {FunctionSpecName(function, host_.codePage), MessageFile{brought->path},
                           MessageLine{brought->line}});
  }
  return brought == nullptr;
}

bool CStkDoc::HasFunctionsToWrite() const {
  return input_ && functionTable_ && functionTable_->Count() != 0 && !BelongsToJob();
}

void CStkDoc::StartWriting(StkSpecWriter::Mode mode, std::string path) {
  const bool automatic = mode == StkSpecWriter::Mode::kAutomatic;
  jobs_.Start(std::make_unique<StkSpecWriteJob>(
      SpecWriteOrder{mode, std::move(path), InputPaths(!automatic), knownSystemFile_},
      *functionTable_, host_, reporter_, mainWindow_));
}

void CStkDoc::EndSpecWrite() {
  auto* job = jobs_.Get<StkSpecWriteJob>();
  if (job == nullptr) {
    return;
  }
  job->Wait();
  anyWritingFailed_ = anyWritingFailed_ || job->End() == JobEnd::kFailed;
  if (job->IsAutomatic()) {
    if (job->End() == JobEnd::kCompleted) {
      knownSystemFile_ = job->Written();
    } else if (job->End() == JobEnd::kStopped) {
      systemSaveDue_ = true;
    }
  }
  jobs_.Empty(JobKind::kSpecWrite);
}

// Until no automatic save runs or is due. One that fails has said so and is not tried again.
void CStkDoc::SettleSystemSave() {
  EndSpecWrite();
  if (systemSaveDue_) {
    SaveSystemFile();
    EndSpecWrite();
    systemSaveDue_ = false;
  }
}

std::vector<std::string> CStkDoc::InputPaths(bool withSources) {
  std::vector<std::string> paths{input_->Path()};
  paths.insert(paths.end(), input_->Modules().begin(), input_->Modules().end());
  if (withSources) {
    for (const auto& source : input_->BuildSpecSources()) {
      paths.push_back(source->Path());
    }
    paths.insert(paths.end(), filesInMemory_.begin(), filesInMemory_.end());
  }
  return paths;
}

}  // namespace velkor
