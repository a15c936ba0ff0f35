#pragma once

#include <cstdint>
#include <vector>

#include "core/bounds.h"

namespace velkor {

// For every function without a bound a function to blame of each kind: itself, else one that it can
// reach (for recursion: a member of the unsettled group). Made in one walk over the functions of a
// computed table, which must not change meanwhile; linear in functions and calls.
class ReasonWitnesses {
 public:
  struct Reason {
    ReasonKind kind;
    const StkFunction* function;
  };

  ReasonWitnesses(const StkFunctionTable& table, const StkBounds& bounds);

  // One of each kind of bounds.Reasons(function), in the order of the kinds.
  std::vector<Reason> Of(const StkFunction& function) const;

 private:
  using Blamed = std::vector<uint32_t>;  // by function; kNone where the kind does not reach

  static constexpr uint32_t kNone = 0xFFFFFFFF;

  Blamed Find(ReasonKind kind) const;
  uint32_t BlamedFor(const Blamed& blamed, std::span<const uint32_t> members,
                     ReasonKind kind) const;

  const StkFunctionTable& table_;
  const StkBounds& bounds_;
  std::array<Blamed, kReasonKinds.size()> blamed_;  // empty for a kind that nothing has
};

}  // namespace velkor
