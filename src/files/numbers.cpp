#include "files/numbers.h"

namespace velkor {

namespace {

constexpr uint32_t kNotADigit = 0xFF;
constexpr uint64_t kLargest = 0xFFFFFFFF;

uint32_t DigitOf(char character, uint32_t base) {
  uint32_t digit = kNotADigit;
  if (character >= '0' && character <= '9') {
    digit = static_cast<uint32_t>(character - '0');
  } else if (character >= 'a' && character <= 'f') {
    digit = static_cast<uint32_t>(character - 'a') + 10;
  } else if (character >= 'A' && character <= 'F') {
    digit = static_cast<uint32_t>(character - 'A') + 10;
  }
  return digit < base ? digit : kNotADigit;
}

bool HasHexPrefix(std::string_view text) {
  return text.size() >= 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
}

// Reads digits from next on, which moves to the first character that is none. False when the value
// grows over 32 bits.
bool ReadDigits(std::string_view text, size_t& next, uint32_t base, uint64_t& value) {
  for (; next < text.size(); ++next) {
    const uint32_t digit = DigitOf(text[next], base);
    if (digit == kNotADigit) {
      break;
    }
    value = value * base + digit;
    if (value > kLargest) {
      return false;
    }
  }
  return true;
}

}  // namespace

NumberResult ParseNumberAt(std::string_view text, size_t& position, uint32_t& value) {
  const std::string_view rest = text.substr(position);
  uint32_t base = 10;
  size_t next = 0;
  size_t start = 0;
  if (HasHexPrefix(rest)) {
    base = 16;
    next = start = 2;
  } else if (!rest.empty() && rest[0] == '0') {
    base = 8;
    next = 1;  // the "0" is a digit of its own, so start stays before it
  }
  uint64_t number = 0;
  if (!ReadDigits(rest, next, base, number)) {
    return NumberResult::kTooLarge;
  }
  value = static_cast<uint32_t>(number);
  if (next == start) {
    return NumberResult::kNoNumber;
  }
  position += next;
  return NumberResult::kOk;
}

NumberResult ParseWholeNumber(std::string_view text, uint32_t base, uint32_t& value) {
  uint64_t number = 0;
  size_t next = 0;
  if (!ReadDigits(text, next, base, number)) {
    return NumberResult::kTooLarge;
  }
  if (text.empty() || next < text.size()) {
    return NumberResult::kNoNumber;
  }
  value = static_cast<uint32_t>(number);
  return NumberResult::kOk;
}

NumberResult ParseNumberText(std::string_view text, uint32_t& value, char& wrong) {
  const bool hex = HasHexPrefix(text);
  const uint32_t base = hex ? 16 : 10;
  const std::string_view digits = hex ? text.substr(2) : text;
  if (digits.empty()) {
    return NumberResult::kEmpty;
  }
  for (const char character : digits) {
    if (DigitOf(character, base) == kNotADigit) {
      wrong = character;
      return NumberResult::kNoNumber;
    }
  }
  return ParseWholeNumber(digits, base, value);
}

}  // namespace velkor
