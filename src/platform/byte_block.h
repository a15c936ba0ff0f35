#pragma once

#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace velkor {

// 64 bytes that are looked at together.
constexpr size_t kByteBlock = 64;

// Bit i is set when byte i of the block is this one.
inline uint64_t FindInBlock(const char* block, char byte) {
  uint64_t found = 0;
#if defined(__SSE2__)
  const __m128i wanted = _mm_set1_epi8(byte);
  for (size_t i = 0; i < kByteBlock; i += sizeof wanted) {
    __m128i part = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block + i));
    const int equal = _mm_movemask_epi8(_mm_cmpeq_epi8(part, wanted));
    found |= uint64_t{static_cast<uint32_t>(equal)} << i;
  }
#else
  for (size_t i = 0; i < kByteBlock; ++i) {
    found |= uint64_t{block[i] == byte} << i;
  }
#endif
  return found;
}

}  // namespace velkor
