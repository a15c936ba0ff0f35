#pragma once

#include <cstddef>

#include "core/function_list.h"
#include "platform/code_page.h"

namespace velkor::ui {

// Brings functions into the order of SortByName in steps of a few milliseconds each, between which
// the window can answer the user. Refers to the functions, whose names must not change meanwhile.
class NameSorter {
 public:
  NameSorter(StkFunctionList functions, const CodePage& codePage);

  // False once the order is there; then it is in Take.
  bool Step();
  StkFunctionList Take() { return std::move(functions_); }

 private:
  bool IsBefore(const StkFunction& left, const StkFunction& right) const;
  void SortRun();
  void Merge();
  void BeginPair(size_t start);

  const CodePage& codePage_;
  StkFunctionList functions_;
  StkFunctionList merged_;  // of functions_, as far as this round has come
  size_t runSize_ = 0;      // functions_ consists of sorted runs of this size
  size_t sorted_ = 0;       // of functions_, into runs of the first size
  // The two runs that are being merged: from where on, and where each ends.
  size_t left_ = 0;
  size_t leftEnd_ = 0;
  size_t right_ = 0;
  size_t rightEnd_ = 0;
};

}  // namespace velkor::ui
