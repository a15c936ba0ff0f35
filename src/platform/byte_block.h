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
#pragma GCC unroll 4
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

// The bits of a block's bytes that are blanks, spaces and tabs, and of those that are this letter,
// in small or in capital.
struct BlanksAndLetters {
  uint64_t blanks = 0;
  uint64_t letters = 0;
};

// letter: the small one.
inline BlanksAndLetters FindBlanksAndLetters(const char* block, char letter) {
  BlanksAndLetters found;
#if defined(__SSE2__)
  const __m128i space = _mm_set1_epi8(' ');  // also what makes a letter small
  const __m128i tab = _mm_set1_epi8('\t');
  const __m128i wanted = _mm_set1_epi8(letter);
#pragma GCC unroll 4
  for (size_t i = 0; i < kByteBlock; i += sizeof space) {
    const __m128i part = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block + i));
    const int blanks =
        _mm_movemask_epi8(_mm_or_si128(_mm_cmpeq_epi8(part, space), _mm_cmpeq_epi8(part, tab)));
    const int letters = _mm_movemask_epi8(_mm_cmpeq_epi8(_mm_or_si128(part, space), wanted));
    found.blanks |= uint64_t{static_cast<uint32_t>(blanks)} << i;
    found.letters |= uint64_t{static_cast<uint32_t>(letters)} << i;
  }
#else
  for (size_t i = 0; i < kByteBlock; ++i) {
    found.blanks |= uint64_t{block[i] == ' ' || block[i] == '\t'} << i;
    found.letters |= uint64_t{(block[i] | ' ') == letter} << i;
  }
#endif
  return found;
}

}  // namespace velkor
