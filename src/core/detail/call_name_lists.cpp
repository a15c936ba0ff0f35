#include "core/detail/call_name_lists.h"

namespace velkor {

void CallNameLists::Add(uint32_t function, uint32_t name) {
  if (function != last_) {
    MoveToEnd(function);
  }
  if (!HasLast(name)) {
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

bool CallNameLists::HasLast(uint32_t name) const {
  const std::span<const uint32_t> run = Of(last_);
  if (run.size() <= kFew) {
    return std::ranges::find(run, name) != run.end();
  }
  return name < latestRun_.size() && latestRun_[name] == runs_[last_].first;
}

void CallNameLists::Append(uint32_t name) {
  Run& run = runs_[last_];
  names_.push_back(name);
  ++run.count;
  if (run.count > kFew) {
    const std::span<const uint32_t> names = Of(last_);
    for (const uint32_t each : run.count == kFew + 1 ? names : names.last(1)) {
      Mark(each);
    }
  }
}

void CallNameLists::Mark(uint32_t name) {
  if (name >= latestRun_.size()) {
    latestRun_.resize(name + size_t{1}, kNone);
  }
  latestRun_[name] = runs_[last_].first;
}

}  // namespace velkor
