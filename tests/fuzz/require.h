#pragma once

#include <cstdint>
#include <string_view>

namespace velkor::testing {

[[noreturn]] void FailRequirement(std::string_view rule, std::string_view about);

// Ends the program with the rule's text where the rule does not hold. A fuzzer, a sanitizer and a
// test program all take that for a finding. about: what it was found in.
inline void Require(bool holds, std::string_view rule, std::string_view about = {}) {
  if (!holds) {
    FailRequirement(rule, about);
  }
}

// The same for two texts or numbers that must be equal.
void RequireEqual(std::string_view left, std::string_view right, std::string_view rule);
void RequireEqual(uint64_t left, uint64_t right, std::string_view rule,
                  std::string_view about = {});

}  // namespace velkor::testing
