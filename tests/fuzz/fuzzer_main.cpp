#include <cstddef>
#include <cstdint>

#include "fuzz/fuzzers.h"

// What libFuzzer calls with each input.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const velkor::testing::Fuzzer kFuzzer = velkor::testing::FindFuzzer(VELKOR_FUZZER);
  kFuzzer({reinterpret_cast<const char*>(data), size});
  return 0;
}
