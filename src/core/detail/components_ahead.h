#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "core/detail/components.h"
#include "platform/worker_thread.h"

namespace velkor {

// Finds the components of a call graph in a thread of its own while its owner does something else.
// A help that may fail: without a second thread, or memory for it, nothing is found.
class ComponentsAhead {
 public:
  // The graph outlives it and does not change. threads: how many may run at once, 0 for as many as
  // the machine runs.
  ComponentsAhead(const CallGraph& graph, size_t threads);

  // Waits for them. None where they were not found, and when asked again.
  std::unique_ptr<Components> Take();

 private:
  std::unique_ptr<Components> found_;
  std::vector<std::unique_ptr<WorkerThread>> thread_;  // one or none
};

}  // namespace velkor
