#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace velkor::ui {

// Sorts in steps of a few milliseconds each, between which the window can answer the user. Less
// must order any two items (no two are equal), and must not change its mind meanwhile.
template <typename Item, typename Less>
class StepSorter {
 public:
  StepSorter(std::vector<Item> items, Less less)
      : less_(std::move(less)), items_(std::move(items)) {}

  // False once the order is there; then it is in Take.
  bool Step() {
    if (sorted_ < items_.size()) {
      SortRun();
    } else if (runSize_ < items_.size()) {
      Merge();
    }
    return sorted_ < items_.size() || runSize_ < items_.size();
  }
  std::vector<Item> Take() { return std::move(items_); }

 private:
  static constexpr size_t kFirstRunSize = 2048;
  static constexpr size_t kMergedAtOnce = 8192;

  void SortRun() {
    const auto begin = items_.begin() + static_cast<std::ptrdiff_t>(sorted_);
    sorted_ += std::min(kFirstRunSize, items_.size() - sorted_);
    std::sort(begin, items_.begin() + static_cast<std::ptrdiff_t>(sorted_), less_);
    BeginPair(0);
  }

  void Merge() {
    merged_.reserve(items_.size());
    for (size_t i = 0; i < kMergedAtOnce && merged_.size() < items_.size(); ++i) {
      if (left_ == leftEnd_ && right_ == rightEnd_) {
        BeginPair(rightEnd_);
      }
      const bool takeLeft =
          right_ == rightEnd_ || (left_ < leftEnd_ && less_(items_[left_], items_[right_]));
      merged_.push_back(items_[takeLeft ? left_++ : right_++]);
    }
    if (merged_.size() == items_.size()) {
      items_.swap(merged_);
      merged_.clear();
      runSize_ *= 2;
      BeginPair(0);
    }
  }

  void BeginPair(size_t start) {
    left_ = start;
    leftEnd_ = std::min(start + runSize_, items_.size());
    right_ = leftEnd_;
    rightEnd_ = std::min(right_ + runSize_, items_.size());
  }

  Less less_;
  std::vector<Item> items_;
  std::vector<Item> merged_;        // of items_, as far as this round has come
  size_t runSize_ = kFirstRunSize;  // items_ consists of sorted runs of this size
  size_t sorted_ = 0;               // of items_, into runs of the first size
  // The two runs that are being merged: from where on, and where each ends.
  size_t left_ = 0;
  size_t leftEnd_ = 0;
  size_t right_ = 0;
  size_t rightEnd_ = 0;
};

}  // namespace velkor::ui
