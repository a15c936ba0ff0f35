#include "fuzz/fuzzers.h"

#include <array>

#include "fuzz/require.h"

namespace velkor::testing {

std::span<const NamedFuzzer> AllFuzzers() {
  static constexpr std::array<NamedFuzzer, 7> kFuzzers{{
      {"project", FuzzProject},
      {"module", FuzzModule},
      {"spec", FuzzSpec},
      {"number", FuzzNumber},
      {"path", FuzzPath},
      {"graph", FuzzGraph},
      {"analysis", FuzzAnalysis},
  }};
  return kFuzzers;
}

Fuzzer FindFuzzer(std::string_view name) {
  for (const NamedFuzzer& named : AllFuzzers()) {
    if (named.name == name) {
      return named.fuzzer;
    }
  }
  FailRequirement("the fuzzer exists", name);
}

}  // namespace velkor::testing
