#include "reports/reason_words.h"

namespace velkor::reports {

std::string_view ReasonWords(ReasonKind kind) {
  switch (kind) {
    case ReasonKind::kUnknown:
      return "unknown";
    case ReasonKind::kIndirect:
      return "indirect calls without callees";
    case ReasonKind::kHiddenCall:
      return "calls that their records do not list";
    case ReasonKind::kDynamic:
      return "frames without a limit";
    case ReasonKind::kRecursion:
      return "recursion that no depths limit";
  }
  return {};
}

}  // namespace velkor::reports
