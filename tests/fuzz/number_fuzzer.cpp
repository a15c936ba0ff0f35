#include <algorithm>
#include <string>

#include "files/numbers.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/fuzzers.h"
#include "fuzz/literal_number.h"
#include "fuzz/require.h"

namespace velkor::testing {

namespace {

constexpr uint32_t kUnset = 0xABCD1234;

void CheckNumberAt(std::string_view text, size_t start) {
  const std::string_view rest = text.substr(start);
  const uint32_t base = HasPrefix(rest) ? 16 : rest.starts_with('0') ? 8 : 10;
  const size_t prefix = base == 16 ? 2 : 0;
  const std::string digits = LeadingDigits(rest.substr(prefix), base);
  uint32_t expected = 0;
  const bool fits = Fits(digits, base, expected);

  size_t position = start;
  uint32_t value = kUnset;
  const NumberResult result = ParseNumberAt(text, position, value);
  if (!fits) {
    Require(result == NumberResult::kTooLarge && value == kUnset, "a number has 32 bits", rest);
  } else if (digits.empty()) {
    Require(result == NumberResult::kNoNumber && position == start && value == 0,
            "a number has a digit", rest);
  } else {
    Require(result == NumberResult::kOk, "digits are a number", rest);
    RequireEqual(value, expected, "a number has the value of its digits", rest);
    RequireEqual(position, start + prefix + digits.size(), "a number ends behind its digits", rest);
  }
}

void CheckWholeNumber(std::string_view text, uint32_t base) {
  const std::string digits = LeadingDigits(text, base);
  uint32_t expected = 0;
  const bool fits = Fits(digits, base, expected);
  uint32_t value = kUnset;
  const NumberResult result = ParseWholeNumber(text, base, value);
  // Which of two faults is told depends on which comes first.
  const bool other = digits.size() < text.size();
  if (!fits || text.empty() || other) {
    Require(value == kUnset, "what is no number has no value", text);
    const NumberResult fault = fits ? NumberResult::kNoNumber : NumberResult::kTooLarge;
    Require(result == fault, "the first fault counts", text);
  } else {
    Require(result == NumberResult::kOk, "digits alone are a number", text);
    RequireEqual(value, expected, "a number has the value of its digits", text);
  }
}

void CheckNumberText(std::string_view text) {
  const uint32_t base = HasPrefix(text) ? 16 : 10;
  const std::string_view body = text.substr(base == 16 ? 2 : 0);
  const std::string digits = LeadingDigits(body, base);
  uint32_t expected = 0;
  const bool fits = Fits(digits, base, expected);
  uint32_t value = kUnset;
  char wrong = '\0';
  const NumberResult result = ParseNumberText(text, value, wrong);
  if (body.empty()) {
    Require(result == NumberResult::kEmpty, "nothing is no number", text);
  } else if (digits.size() < body.size()) {
    Require(result == NumberResult::kNoNumber && wrong == body[digits.size()],
            "the first other character is told", text);
  } else if (!fits) {
    Require(result == NumberResult::kTooLarge, "a number has 32 bits", text);
  } else {
    Require(result == NumberResult::kOk, "digits alone are a number", text);
    RequireEqual(value, expected, "a number has the value of its digits", text);
  }
  Require(result == NumberResult::kOk || value == kUnset, "no number, no value", text);
}

}  // namespace

void FuzzNumber(std::string_view bytes) {
  FuzzInput input(bytes);
  const uint32_t start = input.Below(8);
  const std::string_view text = input.Rest();
  CheckNumberAt(text, std::min<size_t>(start, text.size()));
  CheckWholeNumber(text, 10);
  CheckWholeNumber(text, 16);
  CheckNumberText(text);
}

}  // namespace velkor::testing
