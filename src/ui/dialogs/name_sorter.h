#pragma once

#include "core/function.h"
#include "platform/code_page.h"
#include "ui/step_sorter.h"

namespace velkor::ui {

// The order of SortByName.
class IsBeforeByName {
 public:
  explicit IsBeforeByName(const CodePage& codePage) : codePage_(&codePage) {}

  bool operator()(const StkFunction* left, const StkFunction* right) const {
    const int order = codePage_->Compare(left->name, right->name);
    return order != 0 ? order < 0 : left->index < right->index;
  }

 private:
  const CodePage* codePage_;
};

// Refers to the functions, whose names must not change meanwhile.
using NameSorter = StepSorter<StkFunction*, IsBeforeByName>;

}  // namespace velkor::ui
