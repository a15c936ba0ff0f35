#include "core/detail/call_name_lists.h"

namespace velkor {

void CallNameLists::Add(uint32_t function, uint32_t name) {
  if (function != last_) {
    MoveToEnd(function);
  }
  if (name >= latestRun_.size()) {
    latestRun_.resize(name + size_t{1}, kNone);
  }
  if (latestRun_[name] != runs_[function].first) {
    Append(name);
  }
}

std::span<const uint32_t> CallNameLists::Of(uint32_t function) const {
  if (function >= runs_.size()) {
    return {};
  }
  return {names_.data() + runs_[function].first, runs_[function].count};
}

void CallNameLists::Clear() {
  *this = CallNameLists();
}

// What an earlier run leaves behind is not used again, so that no two runs begin at one place.
void CallNameLists::MoveToEnd(uint32_t function) {
  if (function >= runs_.size()) {
    runs_.resize(function + size_t{1});
  }
  last_ = function;
  const Run before = runs_[function];
  runs_[function] = {static_cast<uint32_t>(names_.size()), 0};
  for (uint32_t i = 0; i < before.count; ++i) {
    Append(names_[before.first + i]);
  }
}

void CallNameLists::Append(uint32_t name) {
  Run& run = runs_[last_];
  latestRun_[name] = run.first;
  names_.push_back(name);
  ++run.count;
}

}  // namespace velkor
