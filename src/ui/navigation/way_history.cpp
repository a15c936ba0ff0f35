#include "ui/navigation/way_history.h"

#include <utility>

namespace velkor::ui {

void WayHistory::Jump(Way from, Way to) {
  if (from == to) {
    return;
  }
  ways_.resize(ways_.empty() ? 1 : at_ + 1);
  ways_[at_] = std::move(from);
  ways_.push_back(std::move(to));
  if (ways_.size() > kMostKept) {
    ways_.erase(ways_.begin());
  }
  at_ = ways_.size() - 1;
}

void WayHistory::Clear() {
  ways_.clear();
  at_ = 0;
}

const WayHistory::Way& WayHistory::Go(Way from, size_t to) {
  ways_[at_] = std::move(from);
  at_ = to;
  return ways_[at_];
}

}  // namespace velkor::ui
