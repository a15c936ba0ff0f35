#pragma once

#include <cstdint>

#include "document/document.h"
#include "document/job_kind.h"

namespace velkor {

// A progress display. User-interface thread.
class ProgressBar {
 public:
  virtual ~ProgressBar() = default;
  virtual void SetPosition(uint64_t position) = 0;
  virtual void SetRange(uint64_t range) = 0;  // 0 to range
  virtual void StepIt() = 0;                  // by one
};

// What a main window does with the notifications of the jobs, the same for every face: registers
// and clears the stop operations, drives the progress display and calls the document's finishing
// operations. One slot for each kind of job. What is left in the queue of a job that has been
// stopped moves nothing any more. A view, because the document stops its jobs by itself when it is
// opened or recalculated: then no slot is filled. User-interface thread.
class StkJobMonitor : public View {
 public:
  StkJobMonitor(CStkDoc& document, ProgressBar& progress);
  ~StkJobMonitor() override;
  StkJobMonitor(const StkJobMonitor&) = delete;
  StkJobMonitor& operator=(const StkJobMonitor&) = delete;

  // A notification that was posted to the main window. Unknown numbers are ignored.
  void Handle(uint32_t message, uint64_t parameter);
  // Whether the Stop command is enabled.
  bool CanStop() const;
  // The Stop command: stops every job whose slot is filled and clears the slots.
  void Stop();
  void OnUpdate(ViewHint hint) override;

 private:
  static JobKind KindOf(uint32_t message);
  void HandleProgress(uint32_t message, uint64_t parameter);
  void HandleEnd(JobKind kind);
  void Restart(uint64_t range);
  void ClearSlots();

  CStkDoc& document_;
  ProgressBar& progress_;
  OfEachJobKind<bool> slots_;
};

}  // namespace velkor
