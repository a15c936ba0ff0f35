#pragma once

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velkor::testing {

inline std::string LeadingDigits(std::string_view text, uint32_t base) {
  const auto end = std::find_if_not(text.begin(), text.end(), [base](char digit) {
    const int lower = std::tolower(static_cast<unsigned char>(digit));
    return digit != '\0' &&
           std::string_view("0123456789abcdef").find(static_cast<char>(lower)) < base;
  });
  return {text.begin(), end};
}

// As long as the number is short, a wide sum of its digits; longer ones are too large, since the
// leading zeros are gone.
inline bool Fits(std::string digits, uint32_t base, uint32_t& value) {
  digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
  if (digits.size() > 11) {
    return false;
  }
  const uint64_t wide = digits.empty() ? 0 : std::stoull(digits, nullptr, static_cast<int>(base));
  value = static_cast<uint32_t>(wide);
  return wide <= 0xFFFFFFFF;
}

inline bool HasPrefix(std::string_view text) {
  return text.starts_with("0x") || text.starts_with("0X");
}

// An ordinary number as C writes it, what follows its digits aside.
inline std::optional<uint32_t> LeadingNumber(std::string_view text) {
  const uint32_t base = HasPrefix(text) ? 16 : text.starts_with('0') ? 8 : 10;
  const std::string digits = LeadingDigits(text.substr(base == 16 ? 2 : 0), base);
  uint32_t value = 0;
  const bool number = !digits.empty() && Fits(digits, base, value);
  return number ? std::optional(value) : std::nullopt;
}

}  // namespace velkor::testing
