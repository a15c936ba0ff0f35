#include "fuzz/require.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace velkor::testing {

void FailRequirement(std::string_view rule, std::string_view about) {
  std::string text = "broken rule: " + std::string(rule);
  if (!about.empty()) {
    text += "\n" + std::string(about);
  }
  std::fprintf(stderr, "%s\n", text.c_str());
  std::abort();
}

void RequireEqual(std::string_view left, std::string_view right, std::string_view rule) {
  if (left != right) {
    FailRequirement(rule, "--- one\n" + std::string(left) + "\n--- other\n" + std::string(right));
  }
}

void RequireEqual(uint64_t left, uint64_t right, std::string_view rule, std::string_view about) {
  if (left != right) {
    FailRequirement(
        rule, std::string(about) + " " + std::to_string(left) + " != " + std::to_string(right));
  }
}

}  // namespace velkor::testing
