#include "files/numbers.h"

#include <gtest/gtest.h>
#include <string>

namespace velkor {
namespace {

constexpr uint32_t kUntouched = 4711;

// Examples only: the number fuzzer checks the three readings on any text.
TEST(Numbers, ThreeReadingsOfOneText) {
  struct Case {
    std::string text;
    NumberResult ordinary;
    uint32_t value;
    NumberResult whole;  // in base 10
    NumberResult typed;
    char wrong;
  };
  using enum NumberResult;
  const Case cases[] = {{"010", kOk, 8, kOk, kOk, '\0'},
                        {"0x1F", kOk, 31, kNoNumber, kOk, '\0'},
                        {"12abc", kOk, 12, kNoNumber, kNoNumber, 'a'},
                        {"09", kOk, 0, kOk, kOk, '\0'},
                        {"4294967295", kOk, 4294967295U, kOk, kOk, '\0'},
                        {"4294967296", kTooLarge, kUntouched, kTooLarge, kTooLarge, '\0'},
                        {"0x", kNoNumber, 0, kNoNumber, kEmpty, '\0'},
                        {"", kNoNumber, 0, kNoNumber, kEmpty, '\0'},
                        {"-1", kNoNumber, 0, kNoNumber, kNoNumber, '-'}};
  for (const Case& c : cases) {
    size_t position = 0;
    uint32_t ordinary = kUntouched;
    uint32_t other = kUntouched;
    char wrong = '\0';
    EXPECT_EQ(c.ordinary, ParseNumberAt(c.text, position, ordinary)) << c.text;
    EXPECT_EQ(c.value, ordinary) << c.text;
    EXPECT_EQ(c.whole, ParseWholeNumber(c.text, 10, other)) << c.text;
    EXPECT_EQ(c.typed, ParseNumberText(c.text, other, wrong)) << c.text;
    EXPECT_EQ(c.wrong, wrong) << c.text;
  }
}

}  // namespace
}  // namespace velkor
