#include <QAbstractItemModelTester>
#include <QPersistentModelIndex>
#include <gtest/gtest.h>

#include "support/computed_graph.h"
#include "ui/views/function_icons.h"
#include "ui/views/function_list_model.h"

namespace velkor::ui {
namespace {

using testing::ComputedGraph;

class FunctionList : public ::testing::Test {
 protected:
  void Show(ComputedGraph& graph, std::string_view cName, bool repeated = false) {
    model = std::make_unique<FunctionListModel>(
        graph.codePage, std::array<QString, 7>{"a", "b", "c", "d", "e", "f", "g"},
        KindDescriptions{"max", "lib", "ring", "?", "known"}, [](const StkFunction& function) {
          const uint32_t missing = function.IsUnknown() ? 1 : 0;
          return FunctionListModel::Need{QString::number(function.frameSize),
                                         missing ? "open" : "", function.frameSize, missing};
        });
    new QAbstractItemModelTester(model.get(), QAbstractItemModelTester::FailureReportingMode::Fatal,
                                 model.get());
    model->Fill({&graph[cName], true, repeated}, kSizeLimit, {}, false);
  }
  // A line a row: its kind, indented where the icon is that of a callee, and its columns.
  std::string Text() const {
    std::string text;
    for (int row = 0; row < model->rowCount(); ++row) {
      const QModelIndex first = model->index(row, 0);
      const auto icon = first.data(Qt::DecorationRole).value<QIcon>();
      const bool isLeft = icon.pixmap(kListIconSize).toImage().pixelColor(8, 8).alpha() > 0;
      text +=
          (isLeft ? "" : " ") + first.data(Qt::AccessibleDescriptionRole).toString().toStdString();
      for (int column = 0; column < model->columnCount(); ++column) {
        text += "|" + model->index(row, column).data().toString().toStdString();
      }
      text += "\n";
    }
    return text;
  }

  std::unique_ptr<FunctionListModel> model;
};

TEST_F(FunctionList, ShowsTheFunctionItsCalleesAndItsExtraCallees) {
  ComputedGraph graph(
      "main 10 -> big also x lib self => target\nbig 50\nalso 50\n? x\n? lib\nself 5 -> self\n"
      "target 7");
  graph["main"].flags |= FN_INDIRECT_CALL;
  graph.SetLibrarySize("lib", 8);
  graph.Adjust("self", 1, 3);
  Show(graph, "main");
  EXPECT_EQ(Text(),
            "max|main&|60|10||C:\\p\\main.c|10|\n"
            " max|also|50|50||C:\\p\\also.c|50|\n"
            " max|big|50|50||C:\\p\\big.c|50|\n"
            " lib|[lib]|8|?|8||0|\n"
            " lib|self*|18|5|1 *3|C:\\p\\self.c|5|\n"
            " ?|[x]|?|?|||0|open\n"
            " known|target|7|7||C:\\p\\target.c|7|\n");
  Show(graph, "self", true);
  EXPECT_EQ(Text(), "max|self*|18|5|1 *3|C:\\p\\self.c|5|\n") << "a repeated node shows itself only";

  Show(graph, "main");
  const QPersistentModelIndex self = model->index(4, 0);
  const QPersistentModelIndex lib = model->index(3, 0);
  model->Sort(SortKey::kMargin, true);
  model->Sort(SortKey::kIcon, false);
  EXPECT_EQ(self.data().toString(), "self*");
  EXPECT_EQ(lib.data().toString(), "[lib]");
  EXPECT_EQ(model->FunctionAt(self.row()), &graph["self"]);
  model->Sort(SortKey::kMark, true);
  EXPECT_EQ(model->FunctionAt(1), &graph["x"]) << "what misses something";
  model->Sort(SortKey::kBound, true);
  EXPECT_EQ(model->FunctionAt(1), &graph["big"]);
  graph.Adjust("x", 900);
  EXPECT_EQ(Text().find("900"), std::string::npos) << "the values of when it was filled";
}

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

// A size of the sort values is doubled.
uint64_t Margin(StkFunction function, std::optional<StkAppliedAdjustment> adjustment = {}) {
  if (adjustment) {
    function.adjustment = std::make_unique<StkAppliedAdjustment>(*adjustment);
  }
  return SortValuesOf(function, 0, kSizeLimit).margin / 2;
}

StkFunction FunctionWith(uint32_t flags, uint32_t frame, uint32_t maxCallee, uint32_t library) {
  StkFunction function;
  function.flags = flags;
  function.frameSize = frame;
  function.maxCalleeSize = maxCallee;
  function.librarySize = library;
  return function;
}

TEST(FunctionMargin, FollowsTheAdjustmentInForceOrTheLibrarySize) {
  constexpr uint32_t kRing = FN_DEFINED | FN_RECURSIVE;
  using InForce = StkAppliedAdjustment;
  EXPECT_EQ(Margin(FunctionWith(FN_DEFINED, 10, 20, 0)), 0U);
  EXPECT_EQ(Margin(FunctionWith(FN_LIBRARY, 0, 0, 9)), 9U);
  EXPECT_EQ(Margin(FunctionWith(FN_DEFINED | FN_FIXED_EXTRA, 10, 0, 6)), 6U) << "preset";
  EXPECT_EQ(Margin(FunctionWith(FN_LIBRARY, 0, 0, 9), InForce{4, 0}), 4U) << "in place of it";
  // The margin once a round, and the other rounds.
  EXPECT_EQ(Margin(FunctionWith(kRing, 10, 20, 0), InForce{4, 3}), 72U);
  EXPECT_EQ(Margin(FunctionWith(kRing, 10, 20, 0), InForce{4, 0}), 4U) << "no depth";
  EXPECT_EQ(Margin(FunctionWith(kRing, 10, 20, 0), InForce{kNoMargin, 2}), 30U);
  EXPECT_EQ(Margin(FunctionWith(kRing, 0, 32768, 0), InForce{0, 3}), kOverSize) << "rounds";
  EXPECT_EQ(Margin(FunctionWith(kRing, kOverSize, 0, 0), InForce{0, 2}), kOverSize);
  EXPECT_EQ(Margin(FunctionWith(kRing, 40000, 40000, 0), InForce{0, 2}), kOverSize) << "a round";
}

}  // namespace
}  // namespace velkor::ui
