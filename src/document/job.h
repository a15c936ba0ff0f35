#pragma once

#include <atomic>
#include <memory>

#include "files/work_end.h"
#include "platform/event.h"
#include "platform/message_target.h"
#include "platform/worker_thread.h"

namespace velkor {

// Owns one worker thread and one stop event. Made, started, waited for (or stopped) and destroyed
// by the document, in the user-interface thread. Run is the work, in the worker's thread; it
// reports through notifications and the worker-side reporting operations only. An exception that
// leaves Run (memory has run out) ends the job through Abandon and goes no further.
//
// The destructor of every derived job calls Stop: the thread must have ended before the members
// that Run uses go.
class StkJob {
 public:
  virtual ~StkJob();
  StkJob(const StkJob&) = delete;
  StkJob& operator=(const StkJob&) = delete;

  void Start();
  // Until the thread has ended.
  void Wait();
  // The same after signalling the stop event.
  void Stop();
  // Valid after Wait or Stop. kFailed too when the job ended through Abandon: nothing has been
  // reported where there was no memory for that.
  WorkEnd End() const { return end_; }
  // The end notification is on its way: the thread does nothing any more and Wait returns at
  // once. False while an end notification that arrives can only be one of an earlier job.
  bool EndPosted() const { return endPosted_; }

 protected:
  StkJob(Event::Reset reset, MessageTarget& mainWindow);

  virtual WorkEnd Run() = 0;
  // Brings what the job works on into a state that may be shown, and posts the end notification.
  // In the worker's thread, or in Start when there is no thread to be had.
  virtual void Abandon() = 0;
  void Post(uint32_t message, uint64_t parameter = 0) { mainWindow_.Post(message, parameter); }
  // The last thing that a job does.
  void PostEnd(uint32_t message);
  // The worker has seen the stop event.
  void SetStopped() { stopped_ = true; }
  bool Stopped() const { return stopped_; }
  // Looks for it. It has been seen from then on.
  bool StopSeen() {
    stopped_ = stopped_ || stopEvent_.Test();
    return stopped_;
  }

  Event stopEvent_;

 private:
  void RunGuarded();
  void AbandonGuarded();

  MessageTarget& mainWindow_;
  std::unique_ptr<WorkerThread> thread_;
  bool stopped_ = false;  // of the worker
  std::atomic<WorkEnd> end_{WorkEnd::kStopped};
  std::atomic<bool> endPosted_{false};
};

}  // namespace velkor
