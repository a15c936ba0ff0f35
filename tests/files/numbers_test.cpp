#include "files/numbers.h"

#include <gtest/gtest.h>
#include <string>

namespace velkor {
namespace {

constexpr uint32_t kUntouched = 4711;
const std::string kManyDigits(400, '9');

TEST(Numbers, AtAPositionTheBaseFollowsFromThePrefix) {
  struct Case {
    std::string text;
    NumberResult result;
    uint32_t value;
    size_t position;  // relative to the start, where the number ended
  };
  const Case cases[] = {
      {"0x1F", NumberResult::kOk, 31, 4},
      {"0XfFg", NumberResult::kOk, 255, 4},
      {"017", NumberResult::kOk, 15, 3},
      {"010", NumberResult::kOk, 8, 3},
      {"09", NumberResult::kOk, 0, 1},
      {"0", NumberResult::kOk, 0, 1},
      {"12abc", NumberResult::kOk, 12, 2},
      {"4294967295", NumberResult::kOk, 4294967295u, 10},
      {"037777777777", NumberResult::kOk, 4294967295u, 12},
      {"0x00000000FFFFFFFF", NumberResult::kOk, 4294967295u, 18},
      {"4294967296", NumberResult::kTooLarge, kUntouched, 0},
      {"0x100000000", NumberResult::kTooLarge, kUntouched, 0},
      {"040000000000", NumberResult::kTooLarge, kUntouched, 0},
      {kManyDigits, NumberResult::kTooLarge, kUntouched, 0},
      {"", NumberResult::kNoNumber, 0, 0},
      {"0x", NumberResult::kNoNumber, 0, 0},
      {"0xg", NumberResult::kNoNumber, 0, 0},
      {"x1", NumberResult::kNoNumber, 0, 0},
      {"-1", NumberResult::kNoNumber, 0, 0},
      {" 1", NumberResult::kNoNumber, 0, 0},
  };
  for (const Case& c : cases) {
    const std::string text = "7," + c.text;
    size_t position = 2;
    uint32_t value = kUntouched;
    EXPECT_EQ(c.result, ParseNumberAt(text, position, value)) << c.text;
    EXPECT_EQ(c.value, value) << c.text;
    EXPECT_EQ(c.position + 2, position) << c.text;
  }
}

TEST(Numbers, WholeTextInOneBase) {
  struct Case {
    std::string text;
    uint32_t base;
    NumberResult result;
    uint32_t value;
  };
  const Case cases[] = {
      {"010", 10, NumberResult::kOk, 10},
      {"FFFFFFFF", 16, NumberResult::kOk, 4294967295u},
      {"aB", 16, NumberResult::kOk, 171},
      {"12a", 10, NumberResult::kNoNumber, kUntouched},
      {"0x12", 16, NumberResult::kNoNumber, kUntouched},
      {"", 10, NumberResult::kNoNumber, kUntouched},
      {"4294967296", 10, NumberResult::kTooLarge, kUntouched},
      {kManyDigits + "x", 10, NumberResult::kTooLarge, kUntouched},
  };
  for (const Case& c : cases) {
    uint32_t value = kUntouched;
    EXPECT_EQ(c.result, ParseWholeNumber(c.text, c.base, value)) << c.text;
    EXPECT_EQ(c.value, value) << c.text;
  }
}

TEST(Numbers, TypedTextNamesItsFirstWrongCharacter) {
  struct Case {
    std::string text;
    NumberResult result;
    uint32_t value;
    char wrong;
  };
  const Case cases[] = {
      {"010", NumberResult::kOk, 10, '\0'},
      {"0x10", NumberResult::kOk, 16, '\0'},
      {"0", NumberResult::kOk, 0, '\0'},
      {"0X", NumberResult::kEmpty, kUntouched, '\0'},
      {"", NumberResult::kEmpty, kUntouched, '\0'},
      {"12a", NumberResult::kNoNumber, kUntouched, 'a'},
      {"x", NumberResult::kNoNumber, kUntouched, 'x'},
      {"0xFG1", NumberResult::kNoNumber, kUntouched, 'G'},
      {" 1", NumberResult::kNoNumber, kUntouched, ' '},
      // A wrong character behind too many digits is named all the same.
      {kManyDigits + "-", NumberResult::kNoNumber, kUntouched, '-'},
      {kManyDigits, NumberResult::kTooLarge, kUntouched, '\0'},
  };
  for (const Case& c : cases) {
    uint32_t value = kUntouched;
    char wrong = '\0';
    EXPECT_EQ(c.result, ParseNumberText(c.text, value, wrong)) << c.text;
    EXPECT_EQ(c.value, value) << c.text;
    EXPECT_EQ(c.wrong, wrong) << c.text;
  }
}

}  // namespace
}  // namespace velkor
