#include <QActionGroup>
#include <QApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <algorithm>

#include "main_window.h"

namespace velkor::ui {
namespace {

// More top-level functions than the tree has room for, and names of some length.
class LargerWindow : public MainWindow {
 protected:
  LargerWindow() : MainWindow(Functions()) {}

  static std::vector<std::string> Functions() {
    std::vector<std::string> functions{"main_of_the_application 10 collect_what_has_been_received"};
    functions.emplace_back("collect_what_has_been_received 20 x");
    for (int i = 0; i < 60; ++i) {
      functions.push_back("entry" + std::to_string(i) + " 5");
    }
    return functions;
  }
  static void ExpectHeadersShown(const QHeaderView& header, int text) {
    for (int column = 0; column < header.count(); ++column) {
      EXPECT_GE(header.sectionSize(column), header.sectionSizeHint(column))
          << text << " % " << column;
    }
  }
};

TEST_F(LargerWindow, ColumnsShareWhatThereIsAtEveryWidthAndTextSize) {
  StartAndFinish();
  Click(Node("main_of_the_application"));
  Choose(Command::kAllFunctions);
  QTableView& all = app->Frame().Panels().AllFunctions().Table();
  ASSERT_TRUE(WaitUntil([&] { return all.model()->rowCount() > 0; }));
  for (const int text : {100, 150, 100}) {
    Choose(Command::kZoomReset);
    for (int percent = 100; percent < text; percent += 10) {
      Choose(Command::kZoomIn);
    }
    for (const int width : {640, 1000, 1900}) {
      app->Frame().resize(width, 700);
      HandleEvents();
      for (const auto& [header, view] :
           {std::pair<QHeaderView*, QAbstractItemView*>(List().header(), &List()),
            std::pair<QHeaderView*, QAbstractItemView*>(all.horizontalHeader(), &all)}) {
        ExpectHeadersShown(*header, text);
        const int names = header->sectionSize(0);
        EXPECT_GE(names, std::min(view->sizeHintForColumn(0), view->viewport()->width() / 2));
        // What is free is not left over.
        EXPECT_GE(header->length(), view->viewport()->width()) << text << " % " << width;
      }
      if (width == 1900) {
        EXPECT_EQ(List().header()->length(), List().viewport()->width()) << text;
      }
    }
  }
}

TEST_F(LargerWindow, WhatIsSelectedStaysInViewWhenAPanelOpens) {
  StartAndFinish();
  app->Frame().resize(1000, 700);
  HandleEvents();
  const QModelIndex last = Tree().indexAt(QPoint(5, Tree().viewport()->height() - 5));
  ASSERT_TRUE(last.isValid());
  Click(last);
  Choose(Command::kFind);
  HandleEvents();
  EXPECT_TRUE(Tree().viewport()->rect().contains(QPoint(0, Tree().visualRect(last).bottom())));

  Tree().verticalScrollBar()->setValue(0);
  ASSERT_LT(Tree().viewport()->height(), Tree().visualRect(last).top());
  app->Frame().resize(1000, 600);
  HandleEvents();
  EXPECT_EQ(Tree().verticalScrollBar()->value(), 0) << "the user has scrolled it out of view";
}

TEST_F(LargerWindow, APartOfAWindowThatHasTheKeyboardShowsIt) {
  StartAndFinish();
  Choose(Command::kAllFunctions);
  Tree().setFocus();
  std::vector<const QWidget*> seen;
  for (int i = 0; i < 5; ++i) {
    Choose(Command::kNextPane);
    const QWidget* focused = app->Frame().focusWidget();
    ASSERT_NE(focused, nullptr);
    EXPECT_NE(focused->focusPolicy(), Qt::NoFocus) << focused->metaObject()->className();
    seen.push_back(focused);
  }
  std::ranges::sort(seen);
  EXPECT_EQ(std::ranges::adjacent_find(seen), seen.end());
  EXPECT_EQ(app->Frame().focusWidget(), &Tree());
}

TEST_F(LargerWindow, WhatIsOnOrOffHasACheckMarkAndOneOfSeveralADot) {
  for (const auto& [command, isOneOfSeveral] :
       {std::pair(Command::kShowTotals, false), std::pair(Command::kAllFunctions, false),
        std::pair(Command::kTreeBySize, true), std::pair(Command::kLogNotes, true)}) {
    const QActionGroup* group = app->Frame().Actions().Of(command).actionGroup();
    EXPECT_EQ(group != nullptr && group->isExclusive(), isOneOfSeveral);
  }
}

}  // namespace
}  // namespace velkor::ui
