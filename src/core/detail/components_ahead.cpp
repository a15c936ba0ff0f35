#include "core/detail/components_ahead.h"

#include <new>
#include <utility>

namespace velkor {

namespace {

// Below this a thread costs more than it brings.
constexpr uint32_t kFewFunctions = 4096;

}  // namespace

ComponentsAhead::ComponentsAhead(const CallGraph& graph, size_t threads) {
  if (graph.Count() < kFewFunctions || ThreadCount(threads) == 1) {
    return;
  }
  thread_ = StartWorkers(1, [this, &graph] {
    try {
      found_ = std::make_unique<Components>(FindComponents(graph));
    } catch (const std::bad_alloc&) {
      // The owner finds them, or has no memory for them either.
    }
  });
}

std::unique_ptr<Components> ComponentsAhead::Take() {
  thread_.clear();
  return std::move(found_);
}

}  // namespace velkor
