#include "document/job_monitor.h"

#include "document/notifications.h"

namespace velkor {

StkJobMonitor::StkJobMonitor(CStkDoc& document, ProgressBar& progress)
    : document_(document), progress_(progress) {}

void StkJobMonitor::Handle(uint32_t message, uint64_t parameter) {
  if (message < WM_STK_ANALYSIS_START || message > WM_STK_CHAINSAVE_PROGRESS) {
    return;
  }
  switch (message) {
    case WM_STK_ANALYSIS_END:
    case WM_STK_SPECREAD_END:
    case WM_STK_SPECWRITE_END:
    case WM_STK_CHAINSAVE_END:
      slots_[SlotOf(message)] = false;
      HandleEnd(message);
      return;
    default:
      if (HasJob(SlotOf(message))) {
        HandleProgress(message, parameter);
      }
  }
}

void StkJobMonitor::HandleProgress(uint32_t message, uint64_t parameter) {
  switch (message) {
    case WM_STK_ANALYSIS_START:
    case WM_STK_SPECWRITE_START:
    case WM_STK_CHAINSAVE_START:
      slots_[SlotOf(message)] = true;
      Restart(parameter);
      break;
    case WM_STK_SPECREAD_START:
      slots_[SlotOf(message)] = true;
      break;
    case WM_STK_SPECREAD_FILE:
      Restart(parameter);
      break;
    case WM_STK_ANALYSIS_STEP:
      progress_.StepIt();
      break;
    case WM_STK_SPECREAD_FILE_END:
      progress_.SetPosition(0);
      break;
    case WM_STK_SPECREAD_PROGRESS:
    case WM_STK_SPECWRITE_PROGRESS:
    case WM_STK_CHAINSAVE_PROGRESS:
      progress_.SetPosition(parameter);
      break;
    default:
      break;
  }
}

void StkJobMonitor::HandleEnd(uint32_t message) {
  switch (message) {
    case WM_STK_ANALYSIS_END:
      document_.FinishAnalysis();
      progress_.SetPosition(0);
      break;
    case WM_STK_SPECREAD_END:
      document_.FinishSpecRead();
      break;
    case WM_STK_SPECWRITE_END:
      document_.FinishSpecWrite();
      progress_.SetPosition(0);
      break;
    case WM_STK_CHAINSAVE_END:
      document_.FinishChainSave();
      progress_.SetPosition(0);
      break;
    default:
      break;
  }
}

bool StkJobMonitor::CanStop() const {
  for (size_t slot = 0; slot < kSlotCount; ++slot) {
    if (slots_[slot] && HasJob(static_cast<Slot>(slot))) {
      return true;
    }
  }
  return false;
}

void StkJobMonitor::Stop() {
  if (!CanStop()) {
    return;
  }
  if (slots_[kAnalysis]) {
    document_.StopAnalysis();
  }
  if (slots_[kSpecRead]) {
    document_.StopSpecRead();
  }
  if (slots_[kSpecWrite]) {
    document_.StopSpecWrite();
  }
  if (slots_[kChainSave]) {
    document_.StopChainSave();
  }
  slots_.fill(false);
  progress_.SetPosition(0);
}

StkJobMonitor::Slot StkJobMonitor::SlotOf(uint32_t message) {
  if (message <= WM_STK_ANALYSIS_STEP) {
    return kAnalysis;
  }
  if (message <= WM_STK_SPECREAD_PROGRESS) {
    return kSpecRead;
  }
  return message <= WM_STK_SPECWRITE_PROGRESS ? kSpecWrite : kChainSave;
}

bool StkJobMonitor::HasJob(Slot slot) const {
  switch (slot) {
    case kAnalysis:
      return document_.IsAnalysing();
    case kSpecRead:
      return document_.IsReadingSpecifications();
    case kSpecWrite:
      return document_.IsWritingSpecifications();
    case kChainSave:
      return document_.IsSavingCallChains();
    default:
      return false;
  }
}

void StkJobMonitor::Restart(uint64_t range) {
  progress_.SetPosition(0);
  progress_.SetRange(range);
}

}  // namespace velkor
