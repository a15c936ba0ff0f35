#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include "platform/event.h"

namespace velkor {

// A thread that is made suspended, does its work once after Resume, and stays valid after the
// work has ended, until its owner destroys it. The destructor resumes a thread that was never
// resumed with nothing to do, and joins; it never detaches.
// An exception that leaves the work ends the program: work handles its own failures.
class WorkerThread {
 public:
  explicit WorkerThread(std::function<void()> work);
  ~WorkerThread();
  WorkerThread(const WorkerThread&) = delete;
  WorkerThread& operator=(const WorkerThread&) = delete;

  void Resume();
  // Without time-out, until the work has ended. Must have been resumed.
  void Wait();

 private:
  std::function<void()> work_;
  Event resumed_{Event::Reset::kManual};
  bool abandoned_ = false;
  std::thread thread_;
};

// How many threads are meant: 0 is as many as run at once.
size_t ThreadCount(size_t wanted);

// Threads that all do this work, at most so many: fewer where the system has no more. None runs
// before all are there.
std::vector<std::unique_ptr<WorkerThread>> StartWorkers(size_t count,
                                                        const std::function<void()>& work);

}  // namespace velkor
