#include "document/job_monitor.h"

#include <algorithm>

#include "document/notifications.h"

namespace velkor {

StkJobMonitor::StkJobMonitor(CStkDoc& document, ProgressBar& progress)
    : document_(document), progress_(progress) {
  document_.AddView(*this);
}

StkJobMonitor::~StkJobMonitor() {
  document_.RemoveView(*this);
}

void StkJobMonitor::Handle(uint32_t message, uint64_t parameter) {
  if (message < WM_STK_ANALYSIS_START || message > WM_STK_CHAINSAVE_PROGRESS) {
    return;
  }
  switch (message) {
    case WM_STK_ANALYSIS_END:
    case WM_STK_SPECREAD_END:
    case WM_STK_SPECWRITE_END:
    case WM_STK_CHAINSAVE_END:
      HandleEnd(KindOf(message));
      return;
    default:
      if (document_.Has(KindOf(message))) {
        HandleProgress(message, parameter);
      }
  }
}

void StkJobMonitor::HandleProgress(uint32_t message, uint64_t parameter) {
  switch (message) {
    case WM_STK_ANALYSIS_START:
    case WM_STK_SPECWRITE_START:
    case WM_STK_CHAINSAVE_START:
      slots_[KindOf(message)] = true;
      Restart(parameter);
      break;
    case WM_STK_SPECREAD_START:
      slots_[KindOf(message)] = true;
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

void StkJobMonitor::HandleEnd(JobKind kind) {
  slots_[kind] = false;
  document_.Finish(kind);
  if (kind != JobKind::kSpecRead) {
    progress_.SetPosition(0);
  }
}

bool StkJobMonitor::CanStop() const {
  return std::ranges::any_of(kJobKinds,
                             [this](JobKind kind) { return slots_[kind] && document_.Has(kind); });
}

void StkJobMonitor::Stop() {
  if (!CanStop()) {
    return;
  }
  for (const JobKind kind : kJobKinds) {
    if (slots_[kind]) {
      document_.Stop(kind);
    }
  }
  ClearSlots();
}

// Sent when every job has been stopped.
void StkJobMonitor::OnUpdate(ViewHint hint) {
  if (hint == HINT_CLEAR) {
    ClearSlots();
  }
}

void StkJobMonitor::ClearSlots() {
  slots_ = {};
  progress_.SetPosition(0);
}

JobKind StkJobMonitor::KindOf(uint32_t message) {
  if (message <= WM_STK_ANALYSIS_STEP) {
    return JobKind::kAnalysis;
  }
  if (message <= WM_STK_SPECREAD_PROGRESS) {
    return JobKind::kSpecRead;
  }
  return message <= WM_STK_SPECWRITE_PROGRESS ? JobKind::kSpecWrite : JobKind::kChainSave;
}

void StkJobMonitor::Restart(uint64_t range) {
  progress_.SetPosition(0);
  progress_.SetRange(range);
}

}  // namespace velkor
