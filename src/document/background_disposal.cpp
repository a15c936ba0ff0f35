#include "document/background_disposal.h"

#include <utility>

namespace velkor {

void BackgroundDisposal::Dispose(std::vector<std::shared_ptr<void>> things) {
  // The thread of an earlier disposal may still be at work.
  std::shared_ptr<WorkerThread> earlier = std::move(thread_);
  thread_ = std::make_unique<WorkerThread>(
      [things = std::move(things), earlier = std::move(earlier)]() mutable {
        for (std::shared_ptr<void>& thing : things) {
          thing.reset();
        }
        earlier.reset();
      });
  thread_->Resume();
}

}  // namespace velkor
