#pragma once

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "core/bounds.h"
#include "core/function_table.h"
#include "ui/step_sorter.h"
#include "ui/views/function_cells.h"
#include "ui/views/function_filter.h"

namespace velkor::ui {

struct FunctionOrderBy {
  FunctionCell cell = FunctionCell::kTotal;
  bool descending = true;

  bool operator==(const FunctionOrderBy&) const = default;
};

// The functions of a whole analysis in the order of a cell, found in steps of a few milliseconds.
// Among equal ones the order of the table decides, in both directions. Refers to the table, in
// which functions must not come or go meanwhile; a value that changes meanwhile counts as it was
// when it was looked at.
class FunctionOrdering {
 public:
  // bounds may be none.
  FunctionOrdering(const StkFunctionTable& functions, const StkBounds* bounds, FunctionOrderBy by);

  // False once the order is there; then it is in Take.
  bool Step();
  // Indices of the table.
  std::vector<uint32_t> Take() { return sorter_->Take(); }

 private:
  struct IsBefore {
    const FunctionOrdering* ordering;
    bool operator()(uint32_t left, uint32_t right) const { return ordering->Less(left, right); }
  };
  struct IsPathBefore {
    const CodePage* codePage;
    bool operator()(const StkFileEntry* left, const StkFileEntry* right) const;
  };

  bool CollectFiles();
  bool SortFiles();
  bool CollectKeys();
  uint64_t KeyOf(const StkFunction& function) const;
  bool Less(uint32_t left, uint32_t right) const;

  const StkFunctionTable& functions_;
  const StkBounds* bounds_;
  const FunctionOrderBy by_;
  uint32_t next_ = 0;                                         // function to be looked at
  std::unordered_map<const StkFileEntry*, uint64_t> places_;  // of files in their order, from 1
  std::vector<const StkFileEntry*> files_;
  std::optional<StepSorter<const StkFileEntry*, IsPathBefore>> fileSorter_;
  std::vector<uint64_t> keys_;  // by function
  std::optional<StepSorter<uint32_t, IsBefore>> sorter_;
};

}  // namespace velkor::ui
