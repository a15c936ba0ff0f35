#pragma once

#include <memory>
#include <vector>

#include "platform/worker_thread.h"

namespace velkor {

// Destroys what is large in a thread of its own: a million records take longer to give back than a
// user should wait. What is disposed of must need nothing else for its end. Dispose does not wait,
// unless there is no thread to be had; the destructor waits until everything is gone.
class BackgroundDisposal {
 public:
  void Dispose(std::vector<std::shared_ptr<void>> things);

 private:
  struct Kept;

  std::unique_ptr<WorkerThread> thread_;
};

}  // namespace velkor
