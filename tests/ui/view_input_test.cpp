#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>

#include "main_window.h"

namespace velkor::ui {
namespace {

// A chain of calls that is deeper than the tree is wide.
class ViewInput : public MainWindow {
 protected:
  ViewInput()
      : MainWindow({"main 10 d1", "d1 1 d2", "d2 1 d3", "d3 1 d4", "d4 1 d5", "d5 1 d6", "d6 1 d7",
                    "d7 1 d8", "d8 1 d9", "d9 1 deepest", "deepest 1", "other 4"}) {
    StartAndFinish();
  }

  static QColor RowColor(QTreeView& view, const QModelIndex& index) {
    const QRect row = view.visualRect(index);
    const QPoint end(std::min(row.right(), view.viewport()->width()) - 2, row.center().y());
    return view.viewport()->grab().toImage().pixelColor(end);
  }
  static QColor Color(QTreeView& view, QPalette::ColorRole role) {
    return view.palette().color(QPalette::Active, role);
  }
  static QMenu* RightClick(QWidget& widget, const QPoint& position) {
    QContextMenuEvent event(QContextMenuEvent::Mouse, position, widget.mapToGlobal(position));
    QApplication::sendEvent(&widget, &event);
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
  }
  QString Prompt() {
    HandleEvents();
    return app->Frame().statusBar()->currentMessage();
  }
  std::string PointAt(QMenu& menu, QAction* action) {
    QTest::mouseMove(&menu, menu.actionGeometry(action).center());
    return Prompt().toStdString();
  }
};

TEST_F(ViewInput, TheSelectedNodeIsSeenAtAnyDepth) {
  for (int depth = 0; depth <= 10; ++depth) {
    const QModelIndex node = Tree().currentIndex();
    const QRect row = Tree().visualRect(node);
    EXPECT_GE(row.left(), 0) << depth;
    EXPECT_LE(row.left() + Tree().iconSize().width() +
                  Tree().fontMetrics().horizontalAdvance(node.data().toString()),
              Tree().viewport()->width())
        << depth;
    QTest::keyClick(Tree().viewport(), Qt::Key_Right);
    QTest::keyClick(Tree().viewport(), Qt::Key_Right);
    HandleEvents();
  }
  EXPECT_EQ(Document().CurrentSelection(), &Function("deepest"));
  QTest::keyClick(Tree().viewport(), Qt::Key_Home);
  EXPECT_EQ(Tree().horizontalScrollBar()->value(), 0);
}

TEST_F(ViewInput, EmptySpaceKeepsTheSelection) {
  for (QTreeView* view : {static_cast<QTreeView*>(&Tree()), static_cast<QTreeView*>(&List())}) {
    view->setFocus();
    view->setCurrentIndex(view->model()->index(0, 0));
    QWidget* area = view->viewport();
    const QPoint below = area->rect().bottomLeft() + QPoint(30, -9);
    for (const Qt::KeyboardModifier held : {Qt::NoModifier, Qt::ControlModifier}) {
      QTest::mouseClick(area, Qt::LeftButton, held, below);
      EXPECT_TRUE(view->selectionModel()->hasSelection());
      QTest::mousePress(area, Qt::LeftButton, held, below);
      QMouseEvent drag(QEvent::MouseMove, below + QPoint(60, -40), area->mapToGlobal(below),
                       Qt::NoButton, Qt::LeftButton, held);
      QApplication::sendEvent(area, &drag);
      QTest::mouseRelease(area, Qt::LeftButton, held, below + QPoint(60, -40));
      EXPECT_TRUE(view->selectionModel()->hasSelection()) << "dragged";
    }
    EXPECT_TRUE(IsEnabled(Command::kAdjustStackSize));
  }
}

TEST_F(ViewInput, TheRowThatAMenuActsOnIsSeen) {
  const QModelIndex other = Node("other");
  QMenu* menu = RightClick(*Tree().viewport(), Tree().visualRect(other).center());
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(RowColor(Tree(), other), Color(Tree(), QPalette::Highlight));
  EXPECT_GT(RowColor(Tree(), Node("main")).lightness(), 240) << "the selected one";
  menu->hide();
  EXPECT_EQ(RowColor(Tree(), other), Color(Tree(), QPalette::Base));

  List().setCurrentIndex(List().model()->index(1, 0));
  Tree().setFocus();
  menu = RightClick(*List().header()->viewport(), {20, 5});
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(RowColor(List(), List().model()->index(1, 4)), Color(List(), QPalette::Highlight));
  ASSERT_EQ(menu->actions().size(), 2);
  menu->actions().front()->trigger();
  menu->hide();
  EXPECT_EQ(adjusted, std::vector<std::string>{"_d1"});
}

TEST_F(ViewInput, ARowThatIsNotSelectedDoesNotLookSo) {
  List().setFocus(Qt::TabFocusReason);
  const QModelIndex first = List().model()->index(0, 0);
  EXPECT_EQ(List().currentIndex(), first);
  const QImage row =
      List().viewport()->grab(List().visualRect(first).adjusted(40, 0, 0, 0)).toImage();
  for (const QPoint corner :
       {row.rect().topLeft(), row.rect().center(), row.rect().bottomRight()}) {
    EXPECT_EQ(row.pixelColor(row.width() - 1, corner.y()), Color(List(), QPalette::Base));
  }
  QTest::keyClick(&List(), Qt::Key_Down);
  EXPECT_EQ(List().SelectedFunction(), &Function("main"))
      << "the row with the keyboard comes first";
}

TEST_F(ViewInput, EveryItemOfAMenuHasItsPrompt) {
  QTest::keyClick(&app->Frame(), Qt::Key_F10);
  auto* file = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(file->title(), "&File");
  QAction& save = app->Frame().Actions().Of(Command::kSaveSpecFile);
  EXPECT_FALSE(save.isEnabled());
  EXPECT_EQ(PointAt(*file, &save),
            "Save the specified stack information into a stack size specification file.");
  file->hide();
  app->Frame().GetLogView().Execute(Command::kClearLog);
  QMenu* log = RightClick(*app->Frame().GetLogView().viewport(), {5, 5});
  ASSERT_NE(log, nullptr);
  EXPECT_FALSE(log->actions().front()->isEnabled());
  EXPECT_EQ(PointAt(*log, log->actions().front()),
            "Copy the selection and put it on the Clipboard.");
  log->hide();
  EXPECT_EQ(Prompt(), "");
}

// A move would make the source delete the project.
TEST_F(ViewInput, ADropIsACopy) {
  QMimeData project;
  project.setUrls({QUrl::fromLocalFile("/p/app.prj")});
  const Qt::DropActions offered = Qt::MoveAction | Qt::CopyAction;
  QDragEnterEvent enter({9, 9}, offered, &project, Qt::LeftButton, Qt::ShiftModifier);
  QDragMoveEvent move({9, 9}, offered, &project, Qt::LeftButton, Qt::ShiftModifier);
  QDropEvent drop({9, 9}, offered, &project, Qt::LeftButton, Qt::ShiftModifier);
  for (QDropEvent* event :
       {static_cast<QDropEvent*>(&enter), static_cast<QDropEvent*>(&move), &drop}) {
    EXPECT_EQ(event->proposedAction(), Qt::MoveAction);
    QApplication::sendEvent(&app->Frame(), event);
    EXPECT_TRUE(event->isAccepted());
    EXPECT_EQ(event->dropAction(), Qt::CopyAction);
  }
  HandleEvents();
  EXPECT_EQ(BoxTexts(), "E9300 Cannot find project file (/p/app.prj).|");
}

TEST_F(ViewInput, AFolderThatIsDroppedIsOpened) {
  const QTemporaryDir build;
  host.files.AddDirectory(build.path().toStdString());
  host.files.Put(build.filePath("a.ci").toStdString(),
                 "graph: { title: \"a.c\"\n"
                 "node: { title: \"reset\" label: \"reset\\na.c:1:5\\n16 bytes (static)\" }\n"
                 "}\n");
  QMimeData folder;
  folder.setUrls({QUrl::fromLocalFile(build.path())});
  QDragEnterEvent enter({9, 9}, Qt::CopyAction, &folder, Qt::LeftButton, Qt::NoModifier);
  QDropEvent drop({9, 9}, Qt::CopyAction, &folder, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&app->Frame(), &enter);
  EXPECT_TRUE(enter.isAccepted());
  QApplication::sendEvent(&app->Frame(), &drop);
  HandleEvents();
  Finish();
  EXPECT_NE(TreeText().find("reset"), std::string::npos) << TreeText() << BoxTexts();
}

}  // namespace
}  // namespace velkor::ui
