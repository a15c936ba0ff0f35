#pragma once

#include <cstddef>

#include "core/function.h"

namespace velkor {

// Two lists as one range, the first before the second. Refers to what the lists hold, which must
// not change meanwhile.
class CallRange {
 public:
  class Iterator {
   public:
    Iterator(StkFunctionSpan first, StkFunctionSpan second, size_t position)
        : first_(first), second_(second), position_(position) {}
    StkFunction* operator*() const {
      return position_ < first_.size() ? first_[position_] : second_[position_ - first_.size()];
    }
    Iterator& operator++() {
      ++position_;
      return *this;
    }
    bool operator==(const Iterator& other) const { return position_ == other.position_; }

   private:
    StkFunctionSpan first_;
    StkFunctionSpan second_;
    size_t position_;
  };

  CallRange(StkFunctionSpan first, StkFunctionSpan second) : first_(first), second_(second) {}
  StkFunction& operator[](size_t position) const { return **Iterator(first_, second_, position); }
  Iterator begin() const { return {first_, second_, 0}; }
  Iterator end() const { return {first_, second_, size()}; }
  size_t size() const { return first_.size() + second_.size(); }

 private:
  StkFunctionSpan first_;
  StkFunctionSpan second_;
};

// Callees, then extra callees: the order in which calls are walked everywhere.
inline CallRange AllCallees(const StkFunction& function) {
  return {function.callees, function.extraCallees};
}
// Those on which its bound depends.
inline CallRange BoundCallees(const StkFunction& function) {
  return function.Is(FN_TOTAL_STATED) ? CallRange({}, {}) : AllCallees(function);
}

}  // namespace velkor
