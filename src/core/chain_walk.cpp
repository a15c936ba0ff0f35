#include "core/chain_walk.h"

#include <algorithm>

#include "core/call_range.h"

namespace velkor {

namespace {

// One walk: the chain from the start function to the parent of the visited one, each with the
// callee to follow next.
class ChainWalk {
 public:
  ChainWalk(ChainMode mode, ChainVisitor& visitor) : next_(mode), visitor_(visitor) {}

  bool Run(const StkFunction& start) {
    if (!Enter(start)) {
      return false;
    }
    while (!path_.empty()) {
      Step& step = path_.back();
      if (step.index == step.count) {
        const StkFunction& left = *step.function;
        SetOnPath(left, false);
        path_.pop_back();
        if (!visitor_.Leave(left)) {
          return false;
        }
        continue;
      }
      const StkFunction& parent = *step.function;
      const size_t index = step.index++;
      if (!visitor_.Branch(parent, index, step.count, AllCallees(parent).size()) ||
          !Enter(next_.At(parent, index))) {
        return false;
      }
    }
    return true;
  }

 private:
  struct Step {
    const StkFunction* function;
    size_t index;
    size_t count;
  };

  bool Enter(const StkFunction& function) {
    if (!visitor_.Visit(function)) {
      return false;
    }
    const size_t count = IsOnPath(function) ? 0 : next_.Count(function);
    if (count == 0) {
      return visitor_.EndOfChain();
    }
    SetOnPath(function, true);
    path_.push_back({&function, 0, count});
    return true;
  }

  bool IsOnPath(const StkFunction& function) const {
    return function.index < onPath_.size() && onPath_[function.index];
  }

  void SetOnPath(const StkFunction& function, bool on) {
    if (function.index >= onPath_.size()) {
      onPath_.resize(std::max<size_t>(function.index + 1, 2 * onPath_.size()));
    }
    onPath_[function.index] = on;
  }

  NextCallees next_;
  ChainVisitor& visitor_;
  std::vector<Step> path_;
  std::vector<bool> onPath_;
};

}  // namespace

size_t NextCallees::Count(const StkFunction& function) {
  return mode_ == ChainMode::kAll ? AllCallees(function).size() : Largest(function).size();
}

StkFunction& NextCallees::At(const StkFunction& function, size_t i) {
  return AllCallees(function)[mode_ == ChainMode::kAll ? i : Largest(function)[i]];
}

const std::vector<uint32_t>& NextCallees::Largest(const StkFunction& function) {
  const auto [entry, added] = largest_.try_emplace(function.index);
  if (!added) {
    return entry->second;
  }
  std::vector<uint32_t>& positions = entry->second;
  uint32_t largest = 0;
  for (size_t i = 0; i < AllCallees(function).size(); ++i) {
    const uint32_t total = AllCallees(function)[i].totalStackSize;
    if (total > largest) {
      largest = total;
      positions.clear();
    }
    if (total == largest) {
      positions.push_back(static_cast<uint32_t>(i));
    }
  }
  return positions;
}

bool WalkChains(const StkFunction& start, ChainMode mode, ChainVisitor& visitor) {
  return ChainWalk(mode, visitor).Run(start);
}

}  // namespace velkor
