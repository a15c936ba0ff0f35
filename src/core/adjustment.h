#pragma once

#include <cstdint>
#include <optional>

#include "core/function_list.h"
#include "platform/code_page.h"

namespace velkor {

constexpr uint32_t kNoMargin = 0xFFFFFFFF;
constexpr uint32_t kNoDepth = 0;

// An adjustment as a specification file or the dialog states it.
struct StkAdjustment {
  uint32_t margin = kNoMargin;             // bytes to add to the total
  uint32_t depth = kNoDepth;               // rounds of the function's recursion
  uint32_t line = 0;                       // of the specification file; 0 from the dialog
  std::optional<StkFunctionList> callees;  // none: not given
  StkFunctionList directCallees;           // stated too, but called directly; from the dialog

  // It states more than callees that are called directly anyway.
  bool Adjusts() const {
    return margin != kNoMargin || depth != kNoDepth || (callees && !callees->empty());
  }
  // Takes a copy and sorts it by name.
  void SetCallees(const StkFunctionList& functions, const CodePage& codePage);
};

// The adjustment in force of one function. Its callees are the function's extra callees.
struct StkAppliedAdjustment {
  uint32_t margin = kNoMargin;
  uint32_t depth = kNoDepth;
};

}  // namespace velkor
