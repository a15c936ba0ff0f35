#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace velkor {

// What a job does. Of each kind, the document has one job at most.
enum class JobKind : uint8_t { kAnalysis, kSpecRead, kSpecWrite, kChainSave };

inline constexpr std::array kJobKinds = {JobKind::kAnalysis, JobKind::kSpecRead,
                                         JobKind::kSpecWrite, JobKind::kChainSave};

// Something for each kind.
template <typename Thing>
class OfEachJobKind {
 public:
  Thing& operator[](JobKind kind) { return things_[static_cast<size_t>(kind)]; }
  const Thing& operator[](JobKind kind) const { return things_[static_cast<size_t>(kind)]; }

 private:
  std::array<Thing, kJobKinds.size()> things_{};
};

}  // namespace velkor
