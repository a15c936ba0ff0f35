#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "fuzz/fuzzers.h"

// What libFuzzer calls with each input.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using velkor::testing::kFuzzers;
  static const auto* const kFuzzer = std::ranges::find(kFuzzers, std::string_view(VELKOR_FUZZER),
                                                       &velkor::testing::NamedFuzzer::name);
  kFuzzer->fuzzer({reinterpret_cast<const char*>(data), size});
  return 0;
}
