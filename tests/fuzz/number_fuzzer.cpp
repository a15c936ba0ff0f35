#include <string>

#include "files/numbers.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/fuzzers.h"
#include "fuzz/literal_number.h"
#include "fuzz/require.h"

namespace velkor::testing {

namespace {

constexpr uint32_t kUnset = 0xABCD1234;

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
  const uint32_t base = input.Below(2) != 0 ? 16 : 10;
  const std::string_view text = input.Rest();
  CheckWholeNumber(text, base);
  CheckNumberText(text);
}

}  // namespace velkor::testing
