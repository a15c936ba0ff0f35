#include <utility>

#include "document/document.h"

namespace velkor {

void CStkDoc::SaveSystemFile() {
  if (!HasFunctionsToWrite()) {
    return;
  }
  if (specWriteJob_ && !specWriteJob_->EndPosted()) {
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

void CStkDoc::StopSpecWrite() {
  if (!specWriteJob_) {
    return;
  }
  const bool automatic = specWriteJob_->IsAutomatic();
  specWriteJob_->Stop();
  EndSpecWrite();
  if (!automatic && systemSaveDue_) {
    SaveSystemFile();
  }
}

void CStkDoc::FinishSpecWrite() {
  if (!specWriteJob_ || !specWriteJob_->EndPosted()) {
    return;
  }
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
  if (chainReportJob_) {
    chainReportJob_->Wait();
  }
  chainReportJob_ = std::make_unique<StkChainReportJob>(
      ChainReportOrder{std::string(path), function,
                       allChains ? ChainMode::kAll : ChainMode::kMaximum, format, InputPaths(true)},
      host_, reporter_, mainWindow_);
  chainReportJob_->Start();
  return true;
}

void CStkDoc::StopChainSave() {
  if (chainReportJob_) {
    chainReportJob_->Stop();
    chainReportJob_.reset();
  }
}

void CStkDoc::FinishChainSave() {
  if (chainReportJob_ && chainReportJob_->EndPosted()) {
    chainReportJob_->Wait();
    chainReportJob_.reset();
  }
}

bool CStkDoc::HasFunctionsToWrite() const {
  return input_ && functionTable_ && functionTable_->Count() != 0 && !analysisJob_ && !specReadJob_;
}

void CStkDoc::StartWriting(StkSpecWriter::Mode mode, std::string path) {
  const bool automatic = mode == StkSpecWriter::Mode::kAutomatic;
  specWriteJob_ = std::make_unique<StkSpecWriteJob>(
      SpecWriteOrder{mode, std::move(path), InputPaths(!automatic), knownSystemFile_},
      *functionTable_, host_, reporter_, mainWindow_);
  specWriteJob_->Start();
}

void CStkDoc::EndSpecWrite() {
  if (!specWriteJob_) {
    return;
  }
  specWriteJob_->Wait();
  if (specWriteJob_->IsAutomatic()) {
    if (specWriteJob_->Completed()) {
      knownSystemFile_ = specWriteJob_->Written();
    } else if (specWriteJob_->Stopped()) {
      systemSaveDue_ = true;
    }
  }
  specWriteJob_.reset();
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
  }
  return paths;
}

}  // namespace velkor
