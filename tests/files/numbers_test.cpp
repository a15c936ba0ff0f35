#include "files/numbers.h"

#include <gtest/gtest.h>
#include <string>
#include <tuple>

namespace velkor {
namespace {

constexpr auto kOk = NumberResult::kOk;
constexpr auto kTooLarge = NumberResult::kTooLarge;
constexpr auto kNoNumber = NumberResult::kNoNumber;
constexpr uint32_t kUnset = 0xABCD1234;  // what is no number leaves the value

const std::string kZeros(5000, '0');
const std::string kNines(5000, '9');

TEST(Numbers, WholeOnes) {
  const std::tuple<std::string, uint32_t, NumberResult, uint32_t> cases[] = {
      {"0", 10, kOk, 0},
      {kZeros + "7", 10, kOk, 7},
      {"4294967295", 10, kOk, 0xFFFFFFFF},
      {"4294967296", 10, kTooLarge, kUnset},
      {kNines, 10, kTooLarge, kUnset},
      {"0fFfFFFFF", 16, kOk, 0xFFFFFFFF},
      {"100000000", 16, kTooLarge, kUnset},
      {"aBc", 16, kOk, 0xABC},
      {"g", 16, kNoNumber, kUnset},
      {"0x1", 16, kNoNumber, kUnset},
      {"", 10, kNoNumber, kUnset},
      {"a", 10, kNoNumber, kUnset},
      {"1 ", 10, kNoNumber, kUnset},
      {"-1", 10, kNoNumber, kUnset},
      {std::string("1\0", 2), 10, kNoNumber, kUnset},
      {"99999999999x", 10, kTooLarge, kUnset},  // the first fault counts
  };
  for (const auto& [text, base, result, expected] : cases) {
    uint32_t value = kUnset;
    EXPECT_EQ(ParseWholeNumber(text, base, value), result) << text;
    EXPECT_EQ(value, expected) << text;
  }
}

TEST(Numbers, TextsOfADialog) {
  const std::tuple<std::string, NumberResult, uint32_t, char> cases[] = {
      {"10", kOk, 10, 0},
      {"010", kOk, 10, 0},
      {"0X1f", kOk, 0x1F, 0},
      {"0x" + kZeros + "FFFFFFFF", kOk, 0xFFFFFFFF, 0},
      {"0x100000000", kTooLarge, kUnset, 0},
      {kNines, kTooLarge, kUnset, 0},
      {"", NumberResult::kEmpty, kUnset, 0},
      {"0x", NumberResult::kEmpty, kUnset, 0},
      {"1a", kNoNumber, kUnset, 'a'},
      {"0xfg", kNoNumber, kUnset, 'g'},
      {kNines + " ", kNoNumber, kUnset, ' '},
      {"x1", kNoNumber, kUnset, 'x'},
  };
  for (const auto& [text, result, expected, other] : cases) {
    uint32_t value = kUnset;
    char wrong = 0;
    EXPECT_EQ(ParseNumberText(text, value, wrong), result) << text;
    EXPECT_EQ(value, expected) << text;
    EXPECT_TRUE(result != kNoNumber || wrong == other) << text;
  }
}

}  // namespace
}  // namespace velkor
