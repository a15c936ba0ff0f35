#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "core/call_range.h"
#include "core/function_table.h"

namespace velkor {

// Looks for what has to move when a function that has a larger number than its new caller is to come
// before it: the callee, and all that it reaches through functions of larger numbers than the
// caller's. None when the caller is among them, or when there are very many.
class CallsBetween {
 public:
  // numbers: of each function by index; a callee has a smaller number than its caller, as far as
  // neither reaches itself. calls: those that are followed.
  CallsBetween(const StkFunctionTable& table, std::span<const uint32_t> numbers,
               CallRange (*calls)(const StkFunction&))
      : table_(table), numbers_(numbers), calls_(calls) {}

  // By index, whether the function is one of them.
  std::optional<std::vector<bool>> Find(uint32_t callee, uint32_t caller) const;

 private:
  static constexpr size_t kMostCalls = size_t{1} << 18;

  const StkFunctionTable& table_;
  std::span<const uint32_t> numbers_;
  CallRange (*calls_)(const StkFunction&);
};

}  // namespace velkor
