#include "document/background_disposal.h"

#include <system_error>
#include <utility>

namespace velkor {

struct BackgroundDisposal::Kept {
  std::vector<std::shared_ptr<void>> things;
  std::unique_ptr<WorkerThread> earlier;
};

void BackgroundDisposal::Dispose(std::vector<std::shared_ptr<void>> things) {
  // Both are shared, so that a thread that is not to be had takes nothing with it.
  const auto kept = std::make_shared<Kept>(Kept{std::move(things), std::move(thread_)});
  const auto dispose = [kept] {
    for (std::shared_ptr<void>& thing : kept->things) {
      thing.reset();
    }
    kept->earlier.reset();  // it may still be at work
  };
  try {
    thread_ = std::make_unique<WorkerThread>(dispose);
  } catch (const std::system_error&) {
    dispose();
    return;
  }
  thread_->Resume();
}

}  // namespace velkor
