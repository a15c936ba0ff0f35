#pragma once

#include <memory>
#include <vector>

#include "platform/worker_thread.h"

namespace velkor {

// Destroys what is large in a thread of its own: a million records take longer to give back than a
// user should wait. What is disposed of must need nothing else for its end. Dispose never waits;
// the destructor waits until everything is gone.
class BackgroundDisposal {
 public:
  void Dispose(std::vector<std::shared_ptr<void>> things);

 private:
  std::unique_ptr<WorkerThread> thread_;
};

}  // namespace velkor
