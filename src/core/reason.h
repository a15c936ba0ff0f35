#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "core/function.h"

namespace velkor {

// Why a function, and so everything that can reach it, has no bound.
enum class ReasonKind : uint8_t {
  kUnknown,     // its own size is not known
  kIndirect,    // it calls through a pointer, and nobody has stated what
  kHiddenCall,  // its code makes a call that its record does not list
  kDynamic,     // its frame grows while it runs
  kRecursion,   // the statements do not limit the recursion that it takes part in
};
inline constexpr std::array<ReasonKind, 5> kReasonKinds = {
    ReasonKind::kUnknown, ReasonKind::kIndirect, ReasonKind::kHiddenCall, ReasonKind::kDynamic,
    ReasonKind::kRecursion};

// "unknown", "indirect", "hidden-call", "dynamic", "recursion": as outputs for programs name them.
std::string_view ReasonName(ReasonKind kind);

// A set of kinds.
class ReasonSet {
 public:
  bool Has(ReasonKind kind) const { return (bits_ & Bit(kind)) != 0; }
  bool empty() const { return bits_ == 0; }
  void Add(ReasonKind kind) { bits_ |= Bit(kind); }
  void Add(ReasonSet other) { bits_ |= other.bits_; }
  bool operator==(const ReasonSet&) const = default;

 private:
  static uint8_t Bit(ReasonKind kind) {
    return static_cast<uint8_t>(1u << static_cast<unsigned>(kind));
  }

  uint8_t bits_ = 0;
};

// What the function itself misses, whatever it calls. Says nothing of recursion, which is a matter
// of a whole group.
ReasonSet MissingOf(const StkFunction& function);

}  // namespace velkor
