#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "core/call_name_lists.h"
#include "core/name_table.h"

namespace velkor {
namespace {

TEST(NameTable, KeepsEachTextOnceAndWhereItIs) {
  NameTable names;
  EXPECT_EQ(names.Find("_f0"), NameTable::kNone);
  const std::string large(100000, 'x');
  const uint32_t first = names.Intern("_f0");
  const char* place = names[first].data();
  EXPECT_EQ(names.Intern(large), 1u);
  EXPECT_EQ(names.Intern(""), 2u);
  for (uint32_t i = 0; i < 20000; ++i) {
    const std::string text = "_f" + std::to_string(i);
    const uint32_t name = names.Intern(text);
    ASSERT_EQ(names.Intern(text), name);
    ASSERT_EQ(names.Find(text), name);
    ASSERT_EQ(names[name], text);
  }
  EXPECT_EQ(names[first].data(), place);
  EXPECT_EQ(names[1], large);
  EXPECT_EQ(names.Find("_F0"), NameTable::kNone);
  names.Clear();
  EXPECT_EQ(names.Find("_f0"), NameTable::kNone);
  EXPECT_EQ(names.Intern("_g"), 0u);
}

// Names that come function by function as well as by turns.
TEST(CallNameLists, HoldNoDuplicatesInWhateverOrderNamesCome) {
  std::mt19937 random(1);
  for (uint32_t round = 0; round < 300; ++round) {
    CallNameLists lists;
    std::vector<std::vector<uint32_t>> expected(5);
    uint32_t function = 0;
    for (int step = 0; step < 60; ++step) {
      function = random() % 100 < round % 100 ? static_cast<uint32_t>(random() % 5) : function;
      const auto name = static_cast<uint32_t>(random() % 8);
      lists.Add(function, name);
      if (std::ranges::find(expected[function], name) == expected[function].end()) {
        expected[function].push_back(name);
      }
    }
    for (uint32_t each = 0; each < 5; ++each) {
      const auto names = lists.Of(each);
      ASSERT_EQ(std::vector<uint32_t>(names.begin(), names.end()), expected[each]) << round;
    }
    lists.Clear();
    EXPECT_TRUE(lists.Of(0).empty());
  }
}

}  // namespace
}  // namespace velkor
