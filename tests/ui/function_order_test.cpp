#include "ui/function_order.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

#include "support/computed_graph.h"

namespace velkor {
namespace {

using testing::ComputedGraph;

std::string Sorted(const std::vector<StkFunction*>& functions, SortKey key, bool descending,
                   const CodePage& codePage, const std::vector<int>& icons = {}) {
  std::vector<SortValues> rows;
  for (size_t i = 0; i < functions.size(); ++i) {
    rows.push_back(SortValuesOf(*functions[i], icons.empty() ? 14 : icons[i]));
  }
  std::string names;
  for (const uint32_t position : SortedPositions(rows, key, descending, codePage)) {
    names += (names.empty() ? "" : " ") + std::string(functions[position]->name.substr(1));
  }
  return names;
}

class FunctionOrder : public ::testing::Test {
 protected:
  // Ascending, then descending; the pinned row, which would stand elsewhere by every key, is
  // left out after it has been looked at.
  std::string Both(SortKey key) {
    std::string result;
    for (const bool descending : {false, true}) {
      std::string order = Sorted(rows, key, descending, graph.codePage, icons);
      EXPECT_EQ(order.substr(0, 7), "middle ");
      result += (result.empty() ? "" : " | ") + order.substr(7);
    }
    return result;
  }

  // In table order.
  ComputedGraph graph{
      "middle 30\n"
      "B 0\n"
      "a 70000\n"
      "? z\n"
      "? lib\n"
      "Zero 0\n"
      "? adj\n"
      "c 30"};
  std::vector<StkFunction*> rows;
  std::vector<int> icons = {4, 14, 10, 13, 11, 14, 11, 12};

  void SetUp() override {
    graph["a"].frameSize = kOverSize;
    graph.SetLibrarySize("lib", 0);
    graph.Adjust("adj", 0);
    graph["c"].file = &graph.files.Intern("c:\\P\\zero.C");
    rows = graph.functions.Functions();
  }
};

TEST_F(FunctionOrder, SortsByEveryKeyInBothDirections) {
  EXPECT_EQ(Both(SortKey::kName), "B Zero a adj c lib z | z lib c adj a Zero B");
  // z shows "?"; a is over the limit.
  EXPECT_EQ(Both(SortKey::kTotal), "z B lib Zero adj c a | a c B lib Zero adj z");
  EXPECT_EQ(Both(SortKey::kFrame), "z lib adj B Zero c a | a c B Zero z lib adj");
  // Only an adjustment or a library size lifts a zero.
  EXPECT_EQ(Both(SortKey::kMargin), "B a z Zero c lib adj | lib adj B a z Zero c");
  // Without a file first; c stands in zero.c whatever its letter case.
  EXPECT_EQ(Both(SortKey::kFile), "z lib adj a B Zero c | Zero c B a z lib adj");
  EXPECT_EQ(Both(SortKey::kIcon), "a lib adj c z B Zero | B Zero z c lib adj a");
}

TEST_F(FunctionOrder, ComparesNamesByCharacterValue) {
  // A double-byte character is greater than a single-byte one, whatever its first byte.
  ComputedGraph japanese("first 1\n\x83\x41 1\n\xB1 1\nz 1", CodePage::ShiftJis());
  EXPECT_EQ(Sorted(japanese.functions.Functions(), SortKey::kName, false, japanese.codePage),
            "first z \xB1 \x83\x41");
}

TEST(AdditionalAmount, FollowsTheAdjustmentInForceOrTheLibrarySize) {
  struct Case {
    const char* what;
    uint32_t flags;
    uint32_t frame;
    uint32_t maxCallee;
    bool adjusted;
    uint32_t margin;
    uint32_t depth;
    uint32_t librarySize;
    uint32_t expected;
  };
  const uint32_t recursive = FN_DEFINED | FN_RECURSIVE;
  const Case cases[] = {
      {"nothing", FN_DEFINED, 10, 20, false, 0, 0, 0, 0},
      {"a size without its flag", FN_DEFINED, 10, 20, false, 0, 0, 9, 0},
      {"library", FN_LIBRARY, 0, 0, false, 0, 0, 9, 9},
      {"library over the limit", FN_LIBRARY, 0, 0, false, 0, 0, 65536, kOverSize},
      {"preset margin", FN_DEFINED | FN_FIXED_EXTRA, 10, 0, false, 0, 0, 6, 6},
      {"margin instead of the library size", FN_LIBRARY, 0, 0, true, 4, 0, 9, 4},
      {"no margin", FN_DEFINED, 10, 20, true, kNoMargin, 0, 0, 0},
      {"a depth without recursion", FN_DEFINED, 10, 20, true, 4, 3, 0, 4},
      {"margin once a round, and the other rounds", recursive, 10, 20, true, 4, 3, 0, 72},
      {"depth 1", recursive, 10, 20, true, 4, 1, 0, 4},
      {"no depth", recursive, 10, 20, true, 4, 0, 0, 4},
      {"rounds without a margin", recursive, 10, 20, true, kNoMargin, 2, 0, 30},
      {"just within", recursive, 65531, 0, true, 2, 2, 0, 65535},
      {"sum over", recursive, 65532, 0, true, 2, 2, 0, kOverSize},
      {"rounds over", recursive, 0, 32768, true, 0, 3, 0, kOverSize},
      {"margins over", recursive, 0, 0, true, 65535, 2, 0, kOverSize},
      {"frame over", recursive, kOverSize, 0, true, 0, 2, 0, kOverSize},
      {"callee over", recursive, 1, kOverSize, true, 0, 2, 0, kOverSize},
      {"frame and callee over together", recursive, 40000, 40000, true, 0, 2, 0, kOverSize},
  };
  for (const Case& one : cases) {
    StkFunction function;
    function.flags = one.flags;
    function.frameSize = one.frame;
    function.maxCalleeSize = one.maxCallee;
    function.librarySize = one.librarySize;
    if (one.adjusted) {
      function.adjustment = std::make_unique<StkAppliedAdjustment>();
      function.adjustment->margin = one.margin;
      function.adjustment->depth = one.depth;
    }
    EXPECT_EQ(AdditionalAmount(function), one.expected) << one.what;
  }
}

}  // namespace
}  // namespace velkor
