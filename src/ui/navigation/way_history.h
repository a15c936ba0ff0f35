#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace velkor::ui {

// Where in the call tree the user has been: the places before and after each jump, as a browser
// keeps them. A place is the way to its node from the top level, as function indices.
class WayHistory {
 public:
  using Way = std::vector<uint32_t>;

  // The place is left for another by a jump. What was forward is gone.
  void Jump(Way from, Way to);
  bool CanGoBack() const { return at_ > 0; }
  bool CanGoForward() const { return at_ + 1 < ways_.size(); }
  // The place to go to; the one that is left takes its present place in the history. Only where
  // CanGoBack or CanGoForward says so.
  const Way& GoBack(Way from) { return Go(std::move(from), at_ - 1); }
  const Way& GoForward(Way from) { return Go(std::move(from), at_ + 1); }
  void Clear();

 private:
  static constexpr size_t kMostKept = 100;

  const Way& Go(Way from, size_t to);

  std::vector<Way> ways_;
  size_t at_ = 0;  // of ways_, where the user is
};

}  // namespace velkor::ui
