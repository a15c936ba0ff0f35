#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace velkor::bench {

// Who calls whom, by number. Functions are added in order, each with the calls that follow it.
class CallGraph {
 public:
  void AddFunction() { ends_.push_back(callees_.size()); }
  // A call by the function added last. The callee may be added later.
  void AddCall(uint32_t callee) {
    callees_.push_back(callee);
    ends_.back() = callees_.size();
  }

  uint32_t FunctionCount() const { return static_cast<uint32_t>(ends_.size()); }
  size_t CallCount() const { return callees_.size(); }
  std::span<const uint32_t> Callees(uint32_t function) const {
    const size_t begin = function == 0 ? 0 : ends_[function - 1];
    return std::span(callees_).subspan(begin, ends_[function] - begin);
  }

 private:
  std::vector<size_t> ends_;  // of each function's calls in callees_
  std::vector<uint32_t> callees_;
};

}  // namespace velkor::bench
