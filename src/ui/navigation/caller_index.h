#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "core/function_table.h"

namespace velkor::ui {

// Who calls each function, found in steps of less than a millisecond. Refers to the table, whose
// calls must not change meanwhile.
class CallerIndex {
 public:
  explicit CallerIndex(const StkFunctionTable& functions);

  // False once all calls are known.
  bool Step();
  // By their indices, ascending, each once.
  std::span<const uint32_t> Of(const StkFunction& function) const;

 private:
  template <typename Visit>
  void VisitSome(const Visit& visit);
  void EndRound();

  const StkFunctionTable& functions_;
  // Where the callers of a function begin; one entry more at the end. While calls are counted:
  // how many it has. While they are entered: where its next one goes.
  std::vector<uint32_t> first_;
  std::vector<uint32_t> callers_;
  std::vector<uint32_t> lastCaller_;  // by callee: of the calls that were looked at
  enum class Round { kCount, kEnter, kDone } round_ = Round::kCount;
  uint32_t caller_ = 0;  // that is looked at next, and its callee
  size_t callee_ = 0;
};

}  // namespace velkor::ui
