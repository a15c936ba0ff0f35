#include "reports/gate/gate_result.h"

#include <algorithm>
#include <fmt/format.h>

#include "files/fingerprint.h"

namespace velkor::reports {

std::string_view StackStateName(StackState state) {
  constexpr std::string_view kNames[] = {"ok", "over-budget", "headroom", "regression", "no-bound"};
  return kNames[static_cast<size_t>(state)];
}

std::string_view SeverityName(Severity severity) {
  constexpr std::string_view kNames[] = {"error", "warning", "note"};
  return kNames[static_cast<size_t>(severity)];
}

std::string Finding::Fingerprint() const {
  using namespace std::string_view_literals;
  StkFingerprint fingerprint;
  for (const std::string_view part :
       {std::string_view(rule), std::string_view(stack), std::string_view(cause)}) {
    fingerprint.Add(part);
    fingerprint.Add("\0"sv);
  }
  return fmt::format("{:016x}", fingerprint.Value());
}

bool GateReport::Passed() const {
  return std::ranges::none_of(
      findings, [](const Finding& finding) { return finding.severity == Severity::kError; });
}

}  // namespace velkor::reports
