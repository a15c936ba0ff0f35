#include "core/detail/components.h"

#include <algorithm>
#include <utility>

namespace velkor {

namespace {

// One depth-first walk. Functions are numbered as they are entered; lowest_ tells for each the
// smallest number of a still open function that is known to be reachable from it. A function left
// with its own number closes a component: what was entered since and is still open.
class ComponentSearch {
 public:
  explicit ComponentSearch(const CallGraph& graph) : graph_(graph), lowest_(graph.Count(), 0) {
    result_.of.resize(graph.Count());
    result_.members.reserve(graph.Count());
    result_.order.reserve(graph.Count());
  }

  Components Run(std::span<const uint32_t> starts) {
    for (const uint32_t start : starts) {
      WalkFrom(start);
    }
    result_.belowStarts = result_.Count();
    for (uint32_t function = 0; function < graph_.Count(); ++function) {
      WalkFrom(function);
    }
    result_.firstMember.push_back(graph_.Count());
    return std::move(result_);
  }

 private:
  static constexpr uint32_t kNotEntered = 0;
  static constexpr uint32_t kClosed = 0xFFFFFFFF;

  struct Frame {
    CallCursor calls;
    uint32_t number;
    bool callsItself;
  };

  void WalkFrom(uint32_t start) {
    if (lowest_[start] == kNotEntered) {
      Enter(start);
    }
    while (!path_.empty()) {
      Frame& frame = path_.back();
      if (frame.calls.AtEnd()) {
        Leave();
        continue;
      }
      const uint32_t callee = *frame.calls.next++;
      if (!frame.calls.AtEnd()) {
        graph_.PrefetchCallees(*frame.calls.next);
      }
      if (lowest_[callee] == kNotEntered) {
        Enter(callee);
      } else {
        frame.callsItself = frame.callsItself || callee == frame.calls.function;
        Lower(frame.calls.function, callee);
      }
    }
  }

  void Enter(uint32_t function) {
    const std::span<const uint32_t> callees = graph_.Callees(function);
    for (const uint32_t callee : callees) {
      __builtin_prefetch(&lowest_[callee]);  // one wait for all of them instead of one for each
      graph_.Prefetch(callee);
    }
    lowest_[function] = ++entered_;
    path_.push_back({CallCursor(function, callees), entered_, false});
    open_.push_back(function);
  }

  void Leave() {
    const Frame frame = path_.back();
    path_.pop_back();
    result_.order.push_back(frame.calls.function);
    if (lowest_[frame.calls.function] == frame.number) {
      Close(frame);
    } else {
      Lower(path_.back().calls.function, frame.calls.function);
    }
  }

  void Lower(uint32_t caller, uint32_t callee) {
    lowest_[caller] = std::min(lowest_[caller], lowest_[callee]);
  }

  void Close(const Frame& frame) {
    const uint32_t component = result_.Count();
    const size_t first = result_.members.size();
    uint32_t member = 0;
    do {
      member = open_.back();
      open_.pop_back();
      lowest_[member] = kClosed;
      result_.of[member] = component;
      result_.members.push_back(member);
    } while (member != frame.calls.function);
    result_.firstMember.push_back(static_cast<uint32_t>(first));
    result_.recursive.push_back(frame.callsItself || result_.members.size() - first > 1);
  }

  const CallGraph& graph_;
  std::vector<uint32_t> lowest_;
  std::vector<Frame> path_;
  std::vector<uint32_t> open_;  // entered, component not yet closed
  uint32_t entered_ = 0;
  Components result_;
};

}  // namespace

Components FindComponents(const CallGraph& graph, std::span<const uint32_t> starts) {
  return ComponentSearch(graph).Run(starts);
}

}  // namespace velkor
