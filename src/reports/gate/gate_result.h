#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/reason.h"
#include "readers/configuration.h"

namespace velkor::reports {

// What a stack came to, the worst that was found of it.
enum class StackState : uint8_t { kOk, kOverBudget, kHeadroom, kRegression, kNoBound };
// "ok", "over-budget", "headroom", "regression", "no-bound": as outputs for programs name them.
std::string_view StackStateName(StackState state);

// One part of what a stack needs.
struct StackRow {
  enum class Part : uint8_t {
    kPath,       // a function of the worst path of the entry
    kInterrupt,  // a handler and all below it
    kFigure,     // what lies there beside functions
  };

  Part part = Part::kFigure;
  std::string what;
  uint64_t bytes = 0;
  uint32_t function = 0;  // not of a figure
};

// A stack of a velkor.toml, or one that a limit of the command line states.
struct GateStack {
  std::string name;
  TextPlace place;                   // where it is stated; nowhere: on the command line
  std::vector<std::string> entries;  // as stated
  std::vector<uint32_t> found;       // of them, functions
  std::optional<uint32_t> deepest;   // of those the one that counts
  StackState state = StackState::kOk;
  bool bounded = true;
  bool lostBound = false;         // it had one in the baseline
  uint64_t known = 0;             // the need, unless it is not bounded
  std::optional<uint64_t> size;   // none: not known
  std::optional<int64_t> change;  // of known, against the baseline
  std::vector<StackRow> rows;     // their bytes sum to known

  // What is left of the size; negative: what is too much.
  std::optional<int64_t> Free() const {
    return size ? std::optional(static_cast<int64_t>(*size) - static_cast<int64_t>(known))
                : std::nullopt;
  }
};

enum class Severity : uint8_t { kError, kWarning, kNote };
// "error", "warning", "note".
std::string_view SeverityName(Severity severity);

// Where a finding lies. Its file is one of the repository where it can be.
struct FindingPlace {
  std::string file;     // empty: nowhere
  uint32_t line = 0;    // from 1; 0: the file as a whole
  uint32_t column = 0;  // from 1; 0: the line as a whole
};

// A function on the way to what a finding says.
struct FindingStep {
  std::string text;
  FindingPlace place;
};

// Something that the gate found.
struct Finding {
  std::string rule;
  Severity severity = Severity::kError;
  std::string text;  // a sentence without its full stop
  std::string help;  // what to do; empty: what the rule says
  FindingPlace place;
  std::string stack;                // the name; empty: of none, or of several
  std::vector<std::string> stacks;  // of several: which
  std::string cause;    // what tells it from others of its rule and stack, in every build
  uint64_t weight = 0;  // bytes, to order findings of one rule
  std::vector<FindingStep> steps;  // the worst path, where there is one
  std::string rows;                // the need taken apart, in one line; empty: none

  // The same for the same finding of another build: of rule, stack and cause.
  std::string Fingerprint() const;
};

// Something that a bound misses.
struct BoundCause {
  ReasonKind kind{};
  uint32_t function = 0;
  std::string name;              // kind and function, in every build
  std::vector<uint32_t> stacks;  // that it leaves without a bound, ascending
};

// All that the gate says of one analysis. A value.
struct GateReport {
  std::string name;      // of the program, for services that keep several apart
  std::string commit;    // of its sources; empty: not known
  std::string compiler;  // name and version
  bool hasBaseline = false;
  std::string baselineCommit;         // empty: not known
  std::vector<GateStack> stacks;      // as stated
  std::vector<std::string> handlers;  // that are counted, by name
  std::vector<Finding> findings;      // errors first

  bool Passed() const;
};

}  // namespace velkor::reports
