#pragma once

#include <atomic>
#include <memory>

#include "platform/event.h"
#include "platform/message_target.h"
#include "platform/worker_thread.h"

namespace velkor {

// Owns one worker thread and one stop event. Made, started, waited for (or stopped) and destroyed
// by the document, in the user-interface thread. The destructor stops and joins a job that still
// runs. Run is the work, in the worker's thread; it reports through notifications and the
// worker-side reporting operations only, and lets no exception out.
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
  // The worker has seen the stop event. Valid after Wait or Stop.
  bool Stopped() const { return stopped_; }

 protected:
  StkJob(Event::Reset reset, MessageTarget& mainWindow);

  virtual void Run() = 0;
  void Post(uint32_t message, uint64_t parameter = 0) { mainWindow_.Post(message, parameter); }
  void SetStopped() { stopped_ = true; }

  Event stopEvent_;

 private:
  MessageTarget& mainWindow_;
  std::unique_ptr<WorkerThread> thread_;
  std::atomic<bool> stopped_{false};
};

}  // namespace velkor
