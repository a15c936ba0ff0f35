#pragma once

#include <cstdint>

namespace velkor::bench {

// Numbers that look random and are the same for the same seed on every machine, unlike those of
// the standard library's distributions.
class Random {
 public:
  explicit Random(uint64_t seed) : state_(seed) {}

  uint64_t Next() {
    state_ += 0x9E3779B97F4A7C15;
    uint64_t value = state_;
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EB;
    return value ^ (value >> 31);
  }
  // From 0 to bound - 1. The bound is not 0.
  uint32_t Below(uint32_t bound) { return static_cast<uint32_t>(((Next() >> 32) * bound) >> 32); }

 private:
  uint64_t state_;
};

}  // namespace velkor::bench
