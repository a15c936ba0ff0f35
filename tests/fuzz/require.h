#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace velkor::testing {

// Ends the program with the rule's text where the rule does not hold. A fuzzer, a sanitizer and a
// test program all take that for a finding. about: what it was found in.
inline void Require(bool holds, std::string_view rule, std::string_view about = {}) {
  if (!holds) {
    const std::string text = std::string(rule) + "\n" + std::string(about);
    std::fprintf(stderr, "broken rule: %s\n", text.c_str());
    std::abort();
  }
}

// The same for two texts or numbers that must be equal.
inline void RequireEqual(std::string_view left, std::string_view right, std::string_view rule) {
  if (left != right) {
    Require(false, rule, "--- one\n" + std::string(left) + "\n--- other\n" + std::string(right));
  }
}
inline void RequireEqual(uint64_t left, uint64_t right, std::string_view rule,
                         std::string_view about = {}) {
  if (left != right) {
    Require(false, rule,
            std::string(about) + " " + std::to_string(left) + " != " + std::to_string(right));
  }
}

}  // namespace velkor::testing
