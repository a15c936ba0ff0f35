#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "core/bounds.h"

namespace velkor {

// One kind of what keeps a function from a bound, and a function to blame for it, by index.
struct ReasonWitness {
  ReasonKind kind{};
  uint32_t function = 0;
};

// For every function without a bound a function to blame of each kind: itself, else one that it can
// reach (for recursion: a member of the unsettled group). A value of four bytes a function for each
// kind that there is; keeps neither the table nor the bounds. Made in one walk over the functions
// of a computed table; linear in functions and calls.
class ReasonWitnesses {
 public:
  ReasonWitnesses() = default;  // of no function
  ReasonWitnesses(const StkFunctionTable& table, const StkBounds& bounds);

  // One of each kind of StkBounds::Reasons, in the order of the kinds.
  std::vector<ReasonWitness> Of(uint32_t function) const;

 private:
  std::array<std::vector<uint32_t>, kReasonKinds.size()> blamed_;  // empty for a kind that is not
};

}  // namespace velkor
