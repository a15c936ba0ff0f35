#include <QApplication>
#include <QDockWidget>
#include <QMenuBar>
#include <QSplitter>
#include <QTest>
#include <QTextBlock>

#include "main_window.h"
#include "ui/dialogs/options_dialog.h"
#include "ui/source_opener.h"

namespace velkor::ui {
namespace {

TEST_F(MainWindow, TheNextWindowIsAsTheLastOneWasLeft) {
  StartAndFinish();
  const auto outer = [this] { return app->Frame().findChild<QSplitter*>("outer"); };
  const qreal normal = QApplication::font().pointSizeF();
  app->Frame().resize(901, 555);
  outer()->setSizes({333, 500});
  const QList<int> sizes = outer()->sizes();
  Choose(Command::kAllFunctions);
  Choose(Command::kZoomIn);
  Choose(Command::kZoomIn);
  HandleEvents();
  List().setColumnWidth(0, 222);
  Choose(Command::kShowBoundColumn);
  Choose(Command::kShowTotals);
  Choose(Command::kTreeBySize);
  Choose(Command::kLogWarnings);
  EXPECT_NEAR(QApplication::font().pointSizeF(), normal * 1.2, 0.1);
  HandleEvents();
  app->Frame().close();

  MakeApp();
  EXPECT_NEAR(QApplication::font().pointSizeF(), normal * 1.2, 0.1);
  Start(std::nullopt);
  EXPECT_EQ(app->Frame().size(), QSize(901, 555));
  EXPECT_EQ(outer()->sizes(), sizes);
  EXPECT_EQ(List().columnWidth(0), 222);
  EXPECT_TRUE(List().isColumnHidden(FunctionListModel::kBound));
  EXPECT_FALSE(List().isColumnHidden(FunctionListModel::kMark));
  EXPECT_FALSE(app->Frame().Actions().Of(Command::kShowTotals).isChecked());
  EXPECT_TRUE(app->Frame().Actions().Of(Command::kTreeBySize).isChecked());
  EXPECT_TRUE(app->Frame().findChild<QDockWidget*>("allFunctions")->isVisible());
  EXPECT_EQ(app->Frame().GetLogView().Least(), LogLevel::kWarning);
  Choose(Command::kZoomReset);
  EXPECT_EQ(QApplication::font().pointSizeF(), normal);

  QMenu* file = app->Frame().menuBar()->actions().front()->menu();
  QMenu* recent = file->actions()[2]->menu();
  ASSERT_NE(recent, nullptr);
  emit recent->aboutToShow();
  ASSERT_EQ(recent->actions().size(), 3);
  EXPECT_EQ(recent->actions().front()->text(), "&1 C:\\p\\app.prj");
}

TEST_F(MainWindow, TheLogLeavesOutWhatMattersLessAndLeadsToThePlace) {
  Start(std::nullopt);
  CStkLogView& log = app->Frame().GetLogView();
  const auto shown = [&] {
    ShowWholeLog();
    std::string lines;
    for (QTextBlock line = log.document()->firstBlock(); line.isValid(); line = line.next()) {
      lines += line.isVisible() ? line.text().toStdString() + "|" : "";
    }
    return lines;
  };
  const StkMessages& texts = app->Context().messages;
  const auto append = [&] {
    log.Append({.text = "Reading..."});
    log.AppendNote({.rule = "r", .text = "n", .file = "C:\\p\\a.c", .line = 7, .function = {}});
    log.Append(texts.MakeMessage(MessageKey::kW9400, {MessageFile{"C:\\p\\b.c"}}));
  };
  const std::string note = "Note: C:\\p\\a.c:7: n|";
  const std::string warning =
      "W9400 Cannot find file (C:\\p\\b.c). Check that the specified file name is correct.|";
  append();
  EXPECT_EQ(shown(), "Reading...|" + note + warning + "|");
  Choose(Command::kLogNotes);
  append();
  EXPECT_EQ(shown(), note + warning + note + warning + "|") << "also what comes later";
  Choose(Command::kLogWarnings);
  EXPECT_EQ(shown(), warning + warning + "|");
  Choose(Command::kLogAll);
  EXPECT_EQ(log.document()->blockCount(), 7);

  log.setFocus();
  log.moveCursor(QTextCursor::Start);
  EXPECT_FALSE(IsEnabled(Command::kGoToSource));
  QTest::keyClick(&log, Qt::Key_Return);
  log.moveCursor(QTextCursor::Down);
  QTest::keyClick(&log, Qt::Key_Return);
  log.moveCursor(QTextCursor::Down);
  Choose(Command::kGoToSource);
  EXPECT_EQ(opened, (std::vector<std::string>{"C:\\p\\a.c:7", "C:\\p\\b.c:0"}));
}

TEST_F(MainWindow, OptionsThatCannotBeUsedAreRefused) {
  const ProjectSettings good{"932", {"C:\\work=/home/me", "D:\\lib=/lib"}};
  OptionsDialog dialog(app->Context(), true, good, "ed +{line} {file}", nullptr);
  EXPECT_EQ(dialog.Project(), good);
  dialog.accept();
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
  for (const ProjectSettings& bad :
       {ProjectSettings{"no-such-set", {}}, ProjectSettings{"", {"C:\\work=/ok", "C:\\work"}}}) {
    OptionsDialog refusing(app->Context(), true, bad, "", nullptr);
    refusing.accept();
    EXPECT_EQ(refusing.result(), QDialog::Rejected);
  }
}

TEST(SourceOpener, TheEditorIsToldFileAndLine) {
  EXPECT_EQ(EditorCommandLine("ed +{line} \"{file}\"", "/a b/{line}.c", 7),
            (QStringList{"ed", "+7", "/a b/{line}.c"}));
  EXPECT_EQ(EditorCommandLine("\"/my editor\" -g {file}:{line}", "/f.c", 0),
            (QStringList{"/my editor", "-g", "/f.c:1"}));
  EXPECT_EQ(EditorCommandLine("ed -n", "/f.c", 3), (QStringList{"ed", "-n", "/f.c"}));
  EXPECT_TRUE(EditorCommandLine(" ", "/f.c", 3).isEmpty());
}

}  // namespace
}  // namespace velkor::ui
