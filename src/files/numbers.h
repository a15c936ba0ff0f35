#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace velkor {

// Parsers of unsigned 32-bit numbers. They keep no state and report nothing.

enum class NumberResult {
  kOk = 0,
  kTooLarge = 1,  // needs more than 32 bits
  kNoNumber = 2,  // no digit at the position, or a character that is not a digit of the base
  kEmpty = 3,     // ParseNumberText only: no text, or a prefix with nothing after it
};

// At position: "0x" or "0X" then base 16, else a leading "0" (itself consumed) then base 8, else
// base 10. Stops at the first character that is not a digit of the base and moves position there.
// kNoNumber when no character was consumed (value 0).
NumberResult ParseNumberAt(std::string_view text, size_t& position, uint32_t& value);
// The whole text in base 10 or 16, without prefix.
NumberResult ParseWholeNumber(std::string_view text, uint32_t base, uint32_t& value);
// The whole text: "0x" or "0X" then base 16, else base 10. With kNoNumber, wrong is the first
// character that is not a digit.
NumberResult ParseNumberText(std::string_view text, uint32_t& value, char& wrong);

}  // namespace velkor
