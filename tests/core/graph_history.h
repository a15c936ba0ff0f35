#pragma once

#include <string>

#include "core/function_table.h"
#include "core/root_list.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/literal_spec.h"
#include "messages/reporter.h"

namespace velkor::testing {

// A database of every kind of function and what happens to it, as an input chooses. After each
// step what is stated must be in force (Require).
class GraphHistory {
 public:
  // A graph of up to kSmall functions is made of any sizes and calls; a larger one of few calls
  // and of small sizes.
  static constexpr uint32_t kSmall = 6;
  GraphHistory(FuzzInput& input, const CodePage& codePage, uint32_t maxFunctions,
               StkReporter& reporter);

  static constexpr uint32_t kKinds = 8;
  // The first step must be kCompute. Whether recursion marks and top-level functions are found
  // anew.
  enum Kind : uint32_t {
    kAdjust,
    kCancel,
    kCancelAll,
    kReadAdjustments,
    kNothing,
    kCompute,
    kDiscard,
    kReadLibrarySize
  };
  bool Step(Kind kind);

  StkFunction& AnyFunction() { return *table.Functions()[input_.Below(table.Count())]; }
  StkFunctionList AnyFunctions();

  StkFunctionTable table;
  StkRootList roots;

 private:
  template <typename T, size_t kCount>
  T AnyOf(const T (&values)[kCount]) {
    return isLarge_ && input_.Below(8) != 0 ? T{input_.Below(9)} : values[input_.Below(kCount)];
  }
  void MakeFunctions(uint32_t maxFunctions);
  void AddCalls(StkFunction& function);
  StkAdjustment AnyAdjustment(const StkFunction& function);
  std::string Name(uint32_t number) const;
  bool Take(Kind kind);
  bool Compute(SpecificationSource* source);
  bool Adjust();
  bool Cancel();
  bool CancelAll();
  bool ReadAdjustments();
  bool Discard();
  bool ReadLibrarySize();

  FuzzInput& input_;
  const bool isLarge_;
  StkReporter& reporter_;
  StkFileTable files_;
  uint32_t count_ = 0;
  Statements stated_;
};

}  // namespace velkor::testing
