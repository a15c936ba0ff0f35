#pragma once

#include <cstdint>
#include <random>

#include "core/file_table.h"
#include "core/function_table.h"

namespace velkor::testing {

// Small databases of every kind of function, the same ones on every run for the same seed.
class RandomGraph {
 public:
  RandomGraph(uint32_t seed, uint32_t maxFunctions);

  uint32_t Below(uint32_t limit) { return static_cast<uint32_t>(random_() % limit); }
  bool OneIn(uint32_t n) { return Below(n) == 0; }
  StkFunction& AnyFunction() { return *table.Functions()[Below(table.Count())]; }
  // In no particular order, without duplicates.
  StkFunctionList AnyFunctions();
  StkAdjustment AnyAdjustment();
  // Adds or takes away one call.
  void ChangeCall();

  CodePage codePage = CodePage::Utf8();
  StkFileTable files{codePage};
  StkFunctionTable table{codePage};

 private:
  void AddFunction();
  uint32_t AnySize();
  static void Connect(StkFunction& caller, StkFunction& callee);

  std::mt19937 random_;
};

}  // namespace velkor::testing
