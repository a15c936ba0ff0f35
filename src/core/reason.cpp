#include "core/reason.h"

namespace velkor {

std::string_view ReasonName(ReasonKind kind) {
  constexpr std::array<std::string_view, kReasonKinds.size()> kNames = {
      "unknown", "indirect", "hidden-call", "dynamic", "recursion"};
  return kNames[static_cast<size_t>(kind)];
}

// A stated margin settles everything, but for one thing: the margin of a dynamic frame says how
// large the frame is, and not also what is called indirectly.
ReasonSet MissingOf(const StkFunction& function) {
  if (function.Is(FN_TOTAL_STATED)) {
    return {};
  }
  const bool marginStated =
      function.adjustment != nullptr && function.adjustment->margin != kNoMargin;
  const bool dynamic = function.Is(FN_DYNAMIC_FRAME);
  const bool callsSettled = !function.extraCallees.empty() ||
                            function.Is(FN_CALLS_STATED | FN_TABLE_CALLS) ||
                            (marginStated && !dynamic);
  ReasonSet missing;
  if (!marginStated && (function.IsUnknown() || function.Is(FN_SIZE_UNKNOWN))) {
    missing.Add(ReasonKind::kUnknown);
  }
  if (!callsSettled && function.Is(FN_INDIRECT_CALL)) {
    missing.Add(ReasonKind::kIndirect);
  }
  if (!callsSettled && function.Is(FN_HIDDEN_CALL)) {
    missing.Add(ReasonKind::kHiddenCall);
  }
  if (!marginStated && dynamic) {
    missing.Add(ReasonKind::kDynamic);
  }
  return missing;
}

}  // namespace velkor
