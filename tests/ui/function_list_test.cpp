#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QTest>
#include <ctime>

#include "analysis_window.h"
#include "ui/arrow_header.h"
#include "ui/function_icons.h"

namespace velkor {
namespace {

using testing::AnalysisWindow;

class FunctionListView : public AnalysisWindow {
 protected:
  FunctionListView() : AnalysisWindow({"main 10 a b c", "a 2", "b 1", "c 3"}) {}

  void ClickHeader(int column) {
    QHeaderView* header = list.header();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier,
                      {header->sectionViewportPosition(column) + 20, header->height() / 2});
  }
  // The column of the arrow and its direction.
  std::string Arrow() const {
    const auto* header = static_cast<const ArrowHeader*>(list.header());
    return std::to_string(header->ArrowSection()) + (header->ArrowDescending() ? "v" : "^");
  }
  std::string Names() const {
    std::string names;
    for (int row = 0; row < list.model()->rowCount(); ++row) {
      names += list.model()->index(row, 0).data().toString().toStdString() + " ";
    }
    return names;
  }
  std::string MarkedSort() {
    std::string marked;
    for (uint32_t command = 32778; command <= 32783; ++command) {
      const auto state = list.StateOf(static_cast<Command>(command));
      marked += state->radioMark ? std::to_string(command) : "";
      marked += state->enabled ? "" : "-";
    }
    return marked;
  }
};

TEST_F(FunctionListView, HeaderClicksAndCommandsSortWithToggling) {
  EXPECT_EQ(MarkedSort(), "------");
  ClickHeader(1);
  EXPECT_EQ(Arrow(), "-1^") << "without functions a click does nothing";
  Open();
  EXPECT_EQ(MarkedSort(), "");
  EXPECT_EQ(Names(), "main a b c ");

  ClickHeader(1);
  EXPECT_EQ(Names() + Arrow(), "main b a c 1^");
  EXPECT_EQ(MarkedSort(), "32780");
  ClickHeader(1);
  EXPECT_EQ(Names() + Arrow(), "main c a b 1v");
  ClickHeader(1);
  EXPECT_EQ(Names() + Arrow(), "main b a c 1^");
  ClickHeader(4);
  EXPECT_EQ(Names() + Arrow(), "main a b c 4^") << "one file: in table order";
  list.Execute(Command::kSortByIcon);
  EXPECT_EQ(Names() + Arrow(), "main c a b 0^") << "c is on the maximum chain";
  EXPECT_EQ(MarkedSort(), "32779");
  list.Execute(Command::kSortByName);
  EXPECT_EQ(Arrow(), "0^") << "another key, though the same column";
  ClickHeader(0);
  EXPECT_EQ(Names() + Arrow(), "main c b a 0v");

  // The order stays for the next fill and is forgotten with the analysis.
  document.UpdateAllViews(nullptr, HINT_SELECTION);
  EXPECT_EQ(Names() + Arrow(), "main c b a 0v");
  document.Recalculate();
  EXPECT_EQ(Names() + Arrow(), "-1^");
  Finish();
  EXPECT_EQ(Names() + Arrow(), "main a b c -1^");
}

TEST_F(FunctionListView, OffersItsMenuWithTheCurrentSort) {
  Open();
  list.Execute(Command::kSortByFrame);
  QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(5, 5), QPoint(5, 5));
  QApplication::sendEvent(&list, &event);
  QMenu* menu = list.findChild<QMenu*>(QString(), Qt::FindDirectChildrenOnly);
  ASSERT_NE(menu, nullptr);
  ASSERT_EQ(menu->actions().size(), 2);
  EXPECT_FALSE(menu->actions()[0]->isEnabled()) << "no row is selected";
  const QList<QAction*> sorts = menu->actions()[1]->menu()->actions();
  std::string items;
  for (const QAction* action : sorts) {
    items += action->text().toStdString() + (action->isChecked() ? "* " : " ");
  }
  EXPECT_EQ(items, "Name Icon Size Frame* Margin File ");
  sorts[3]->trigger();
  EXPECT_EQ(Arrow(), "2v");
  delete menu;
}

TEST_F(FunctionListView, SearchesNamesWhateverColumnIsCurrent) {
  Open();
  list.setCurrentIndex(list.model()->index(1, 2));
  list.setFocus();
  QTest::keyClicks(&list, "c");
  ASSERT_NE(list.SelectedFunction(), nullptr);
  EXPECT_EQ(list.SelectedFunction(), &Function("c"));
}

TEST_F(FunctionListView, HeadersAreAtLeastAsWideAsStatedAndWhole) {
  const int widths[] = {100, 80, 80, 80, 300};
  for (int column = 0; column < 5; ++column) {
    EXPECT_GE(list.columnWidth(column), widths[column]);
    const QString title = list.model()->headerData(column, Qt::Horizontal).toString();
    EXPECT_GE(list.columnWidth(column),
              list.header()->fontMetrics().horizontalAdvance(title) + kArrowSize.width());
  }
}

TEST_F(FunctionListView, NamesGetTheWidthThatIsLeftOverUntilTheUserDecides) {
  list.resize(500, 300);
  EXPECT_EQ(list.columnWidth(0), 100);
  const int others = list.header()->length() - list.columnWidth(0);
  list.resize(others + 180, 300);
  EXPECT_GT(list.columnWidth(0), 150);
  EXPECT_LE(list.header()->length(), list.viewport()->width());
  list.resize(3000, 300);
  EXPECT_LT(list.columnWidth(0), 1000) << "no name needs so much";
  list.setColumnWidth(0, 130);
  list.resize(others + 200, 300);
  EXPECT_EQ(list.columnWidth(0), 130);
}

TEST_F(FunctionListView, ShowsItsSelectionOnlyWithTheFocus) {
  Open();
  const auto picture = [this] { return list.viewport()->grab().toImage(); };
  const auto focus = [](QWidget& view) {
    view.activateWindow();
    view.setFocus();
    return QTest::qWaitFor([&view] { return view.hasFocus(); });
  };
  const QImage plain = picture();
  list.setCurrentIndex(list.model()->index(1, 0));
  ASSERT_TRUE(focus(list));
  EXPECT_NE(picture(), plain);
  ASSERT_TRUE(focus(tree));
  EXPECT_EQ(picture(), plain);
  EXPECT_EQ(list.SelectedFunction(), &Function("a"));
}

class WideWindow : public AnalysisWindow {
 protected:
  static constexpr int kWidth = 20000;

  WideWindow() : AnalysisWindow(Functions()) {}

  static std::vector<std::string> Functions() {
    std::vector<std::string> functions = {"main 10"};
    for (int i = 0; i < kWidth; ++i) {
      functions.front() += " f" + std::to_string(i);
      functions.push_back("f" + std::to_string(i) + " " + std::to_string(i * 7919 % 1000));
    }
    return functions;
  }
};

TEST_F(WideWindow, ShowsSortsAndRefreshesManyCalleesWithoutStandingStill) {
  Open();
  const std::clock_t start = std::clock();
  tree.expand(Node("main"));
  for (uint32_t command = 32778; command <= 32783; ++command) {
    list.Execute(static_cast<Command>(command));
  }
  document.UpdateAllViews(nullptr, HINT_SIZES);
  document.UpdateAllViews(nullptr, HINT_STRUCTURE);
  QApplication::processEvents();
  EXPECT_LT(std::clock() - start, 10 * CLOCKS_PER_SEC) << "quadratic in the callees";
  EXPECT_EQ(list.model()->rowCount(), kWidth + 1);
  EXPECT_TRUE(tree.isExpanded(Node("main")));
  RecordProperty("milliseconds", static_cast<int>((std::clock() - start) * 1000 / CLOCKS_PER_SEC));
}

}  // namespace
}  // namespace velkor
