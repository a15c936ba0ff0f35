#include "document/background_disposal.h"

#include <utility>

namespace velkor {

void BackgroundDisposal::Dispose(std::vector<std::shared_ptr<void>> things) {
  thread_.reset();
  thread_ = std::make_unique<WorkerThread>([things = std::move(things)]() mutable {
    for (std::shared_ptr<void>& thing : things) {
      thing.reset();
    }
  });
  thread_->Resume();
}

}  // namespace velkor
