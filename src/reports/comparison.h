#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "reports/compared_analysis.h"

namespace velkor::reports {

// What has become of a top-level function from one analysis to a later one, the worst first.
enum class EntryChange {
  kLostBound,
  kOver,  // its bound is over the limit now
  kGrew,
  kAdded,
  kShrank,
  kGainedBound,
  kRemoved,
  kUnchanged,
};

struct ComparedEntry {
  EntryChange change{};
  std::optional<uint32_t> before;  // in the old analysis
  std::optional<uint32_t> after;   // in the new one
  uint64_t knownBefore = 0;        // bytes, like the next
  uint64_t knownAfter = 0;
};

// Why top-level functions are worse, or better, than before: what changed on the path that takes
// the most bytes.
struct ChangeCause {
  enum class Kind {
    kReason,  // the function misses something now
    kSize,    // its own bytes have changed
    kCall,    // it is called from where it was not before
    kRounds,  // another number of activations of its recursion is stated
    kPath,    // none of these: the path goes elsewhere
  };

  Kind kind{};
  ReasonKind reason{};
  bool inOld = false;  // of functions that shrank: function and path are those of the old analysis
  uint32_t function = 0;  // of kPath: the top-level one
  uint64_t sizeBefore = 0;
  uint64_t sizeAfter = 0;
  std::vector<uint32_t> path;   // from the first of the entries to the function
  std::vector<size_t> entries;  // in the entries of the comparison
};

struct Comparison {
  std::vector<ComparedEntry> entries;  // the worst first, among equal ones the largest change
  std::vector<ChangeCause> causes;     // in the order of the entries that they begin with
  size_t matched = 0;                  // functions that both analyses hold

  size_t Count(EntryChange change) const;
};

// Functions are the same where their keys are, in the order of the tables where several share one;
// else where both analyses have a single one left of the symbol. Linear in functions and calls, but
// for sorting, and for paths to what is missing, which have a fixed effort.
Comparison Compare(const ComparedAnalysis& before, const ComparedAnalysis& after);

}  // namespace velkor::reports
