#include "ui/dialogs/name_sorter.h"

#include <algorithm>

#include "core/function.h"

namespace velkor::ui {

namespace {

constexpr size_t kFirstRunSize = 2048;
constexpr size_t kMergedAtOnce = 8192;

}  // namespace

NameSorter::NameSorter(StkFunctionList functions, const CodePage& codePage)
    : codePage_(codePage), functions_(std::move(functions)), runSize_(kFirstRunSize) {}

bool NameSorter::Step() {
  if (sorted_ < functions_.size()) {
    SortRun();
  } else if (runSize_ < functions_.size()) {
    Merge();
  }
  return sorted_ < functions_.size() || runSize_ < functions_.size();
}

bool NameSorter::IsBefore(const StkFunction& left, const StkFunction& right) const {
  const int order = codePage_.Compare(left.name, right.name);
  return order != 0 ? order < 0 : left.index < right.index;
}

void NameSorter::SortRun() {
  const auto begin = functions_.begin() + static_cast<ptrdiff_t>(sorted_);
  sorted_ += std::min(kFirstRunSize, functions_.size() - sorted_);
  std::sort(begin, functions_.begin() + static_cast<ptrdiff_t>(sorted_),
            [this](const StkFunction* left, const StkFunction* right) {
              return IsBefore(*left, *right);
            });
  BeginPair(0);
}

void NameSorter::Merge() {
  merged_.reserve(functions_.size());
  for (size_t i = 0; i < kMergedAtOnce && merged_.size() < functions_.size(); ++i) {
    if (left_ == leftEnd_ && right_ == rightEnd_) {
      BeginPair(rightEnd_);
    }
    const bool takeLeft = right_ == rightEnd_ ||
                          (left_ < leftEnd_ && IsBefore(*functions_[left_], *functions_[right_]));
    merged_.push_back(functions_[takeLeft ? left_++ : right_++]);
  }
  if (merged_.size() == functions_.size()) {
    functions_.swap(merged_);
    merged_.clear();
    runSize_ *= 2;
    BeginPair(0);
  }
}

void NameSorter::BeginPair(size_t start) {
  left_ = start;
  leftEnd_ = std::min(start + runSize_, functions_.size());
  right_ = leftEnd_;
  rightEnd_ = std::min(right_ + runSize_, functions_.size());
}

}  // namespace velkor::ui
