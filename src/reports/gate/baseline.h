#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "readers/configuration.h"
#include "reports/gate/gate_result.h"

namespace velkor::reports {

// What a gate came to before, kept in a file beside the configuration so that a later one says what
// has changed. A value.
struct Baseline {
  struct Stack {
    std::string name;
    uint64_t known = 0;
    bool bounded = true;
    std::vector<std::string> entries;
    // The worst path: functions with their bytes.
    std::vector<std::pair<std::string, uint64_t>> path;
  };
  // A finding that is known: of a bound that is missing, or of what is not listed.
  struct Cause {
    std::string rule;
    std::string name;                 // a kind, a blank, what names the function
    std::vector<std::string> stacks;  // that it leaves without a bound

    auto operator<=>(const Cause&) const = default;  // NOLINT(modernize-use-nullptr): none
  };

  std::string project;
  std::string commit;  // empty: not known
  std::string compiler;
  std::vector<Stack> stacks;          // by name
  std::vector<std::string> handlers;  // that are counted, by name
  std::vector<Cause> causes;          // by rule and name

  const Stack* Find(std::string_view stack) const;
  // Which of these causes it holds. A function is told by file and name; one that has moved to
  // another file by its name, where that is the only one here and there.
  std::vector<bool> Holds(const std::vector<Cause>& asked) const;
};

// Sorted, one stack or cause a line.
std::string BaselineText(const Baseline& baseline);

struct ReadBaselineResult {
  std::optional<Baseline> baseline;  // none: there is a fault
  TextPlace place;                   // of the fault
  std::string fault;                 // a phrase
};

// Any bytes may be given.
ReadBaselineResult ReadBaseline(std::string_view text);

}  // namespace velkor::reports
