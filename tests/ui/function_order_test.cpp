#include "ui/views/function_order.h"

#include <gtest/gtest.h>

#include "support/computed_graph.h"

namespace velkor::ui {
namespace {

using testing::ComputedGraph;

class FunctionOrder : public ::testing::Test {
 protected:
  FunctionOrder() {
    graph["a"].frameSize = kOverSize;
    graph.SetLibrarySize("lib", 0);
    graph.Adjust("adj", 0);
    graph["c"].file = &graph.files.Intern("c:\\P\\zero.C");
  }

  // Ascending, then descending; the pinned row, which would stand elsewhere by every key, is
  // left out after it has been looked at.
  std::string Both(SortKey key) {
    const StkFunctionList& functions = graph.functions.Functions();
    std::vector<SortValues> rows;
    for (size_t i = 0; i < functions.size(); ++i) {
      rows.push_back(SortValuesOf(*functions[i], icons[i], kSizeLimit));
    }
    std::string result;
    for (const bool descending : {false, true}) {
      std::string order;
      for (const uint32_t position : SortedPositions(rows, key, descending, graph.codePage)) {
        order += " " + std::string(functions[position]->name.substr(1));
      }
      EXPECT_EQ(order.substr(0, 8), " middle ");
      result += (result.empty() ? "" : " | ") + order.substr(8);
    }
    return result;
  }

  // In table order.
  ComputedGraph graph{"middle 30\nB 0\na 70000\n? z\n? lib\nZero 0\n? adj\nc 30"};
  const std::vector<int> icons = {4, 14, 10, 13, 11, 14, 11, 12};
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
      {"library", FN_LIBRARY, 0, 0, false, 0, 0, 9, 9},
      {"preset margin", FN_DEFINED | FN_FIXED_EXTRA, 10, 0, false, 0, 0, 6, 6},
      {"margin instead of the library size", FN_LIBRARY, 0, 0, true, 4, 0, 9, 4},
      {"margin once a round, and the other rounds", recursive, 10, 20, true, 4, 3, 0, 72},
      {"no depth", recursive, 10, 20, true, 4, 0, 0, 4},
      {"rounds without a margin", recursive, 10, 20, true, kNoMargin, 2, 0, 30},
      {"rounds over", recursive, 0, 32768, true, 0, 3, 0, kOverSize},
      {"frame over", recursive, kOverSize, 0, true, 0, 2, 0, kOverSize},
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
    EXPECT_EQ(AdditionalAmount(function, kSizeLimit), one.expected) << one.what;
  }
}

}  // namespace
}  // namespace velkor::ui
