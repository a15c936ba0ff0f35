#include <QAbstractButton>
#include <QEventLoop>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <map>

#include "main_window.h"
#include "ui/wait_cursor.h"

namespace velkor {
namespace {

using testing::MainWindow;

// A box of the test that is open until it is told to close, with an event loop as real ones have.
struct OpenBox {
  QEventLoop loop;
  BoxAnswer answer = BoxAnswer::kRetry;
};

class BoxesOfTheWindow : public MainWindow {
 protected:
  BoxesOfTheWindow() {
    boxes.answerWith = [this](const testing::RecordingBoxes::Box&) {
      OpenBox box;
      open = &box;
      whileOpen();
      QTimer::singleShot(0, &box.loop, &QEventLoop::quit);
      box.loop.exec();
      open = nullptr;
      return box.answer;
    };
  }
  // A specification file with two errors.
  void LoadErrors() {
    host.files.Put("C:\\p\\spec.txt", "none, ADD=5\nnone2, ADD=6\n");
    dialogs.answers = {"C:\\p\\spec.txt"};
    Choose(Command::kLoadSpecFile);
  }

  OpenBox* open = nullptr;
  std::function<void()> whileOpen = [] {};
};

TEST_F(BoxesOfTheWindow, StopWhileTheQuestionIsOpenEndsTheJobAtOnce) {
  StartAndFinish();
  whileOpen = [this] {
    Choose(Command::kStop);
    EXPECT_FALSE(HasJobs());
    EXPECT_FALSE(IsEnabled(Command::kStop));
    HandleEvents();
  };
  LoadErrors();
  ASSERT_TRUE(WaitUntil([this] { return !boxes.boxes.empty() && !open; }));
  Finish();
  EXPECT_EQ(boxes.boxes.size(), 1U) << "answering afterwards changes nothing";
  EXPECT_TRUE(IsEnabled(Command::kLoadSpecFile));
}

TEST_F(BoxesOfTheWindow, ClosingWhileTheQuestionIsOpen) {
  StartAndFinish();
  whileOpen = [this] {
    app->Frame().close();
    EXPECT_FALSE(HasJobs());
  };
  LoadErrors();
  ASSERT_TRUE(WaitUntil([this] { return closedCount == 1 && !open; }));
  HandleEvents();
  EXPECT_EQ(boxes.boxes.size(), 1U);
}

TEST_F(BoxesOfTheWindow, AnAnalysisEndsBehindAnOpenBox) {
  host.files.Remove("C:\\p\\a.asm");
  whileOpen = [this] {
    app->Context().reporter.PostLog(MessageKey::kReadingStarted, {"behind"});
    EXPECT_TRUE(WaitUntil([this] { return !HasJobs(); }));
    EXPECT_EQ(app->Frame().TreeView().model()->rowCount(), 1);
    EXPECT_EQ(Log().find("behind"), std::string::npos) << "requests wait their turn";
  };
  StartAndFinish();
  ASSERT_EQ(boxes.boxes.size(), 1U);
  EXPECT_TRUE(boxes.boxes[0].text.starts_with("W9431 "));
  const std::string log = Log();
  EXPECT_LT(log.find("W9431"), log.find("b.asm Reading..."));
  EXPECT_NE(log.find("behind"), std::string::npos);
}

class RealBoxes : public ::testing::Test {
 protected:
  // Presses the button of that text, or only looks when it is empty.
  BoxAnswer Press(const QString& text, BoxButtons buttons, BoxIcon icon = BoxIcon::kQuestion) {
    QTimer::singleShot(0, [this, text] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      shown = box->text();
      shownIcon = box->icon();
      cursor = QGuiApplication::overrideCursor() ? QGuiApplication::overrideCursor()->shape()
                                                 : Qt::ArrowCursor;
      std::map<int, QString> byPlace;
      for (QAbstractButton* button : box->buttons()) {
        byPlace[button->x()] = button->text();
      }
      labels.clear();
      for (const auto& [place, label] : byPlace) {
        labels += label + " ";
      }
      if (text.isEmpty()) {
        QTest::keyClick(box, Qt::Key_Escape);
      }
      for (QAbstractButton* button : box->buttons()) {
        if (button->text() == text || (text.isEmpty() && box->isVisible())) {
          button->click();
          return;
        }
      }
    });
    return boxes.Show("text <b>plain</b>", icon, buttons);
  }

  CodePage codePage = CodePage::Utf8();
  StkMessages messages = WindowMessages(codePage, Language::kEnglish);
  WindowBoxes boxes{messages, "velkor"};
  QString shown;
  QString labels;
  QMessageBox::Icon shownIcon = QMessageBox::NoIcon;
  Qt::CursorShape cursor = Qt::ArrowCursor;
};

TEST_F(RealBoxes, ButtonsInTheirOrderGiveTheirAnswers) {
  EXPECT_EQ(Press("OK", BoxButtons::kOk, BoxIcon::kExclamation), BoxAnswer::kOk);
  EXPECT_EQ(shownIcon, QMessageBox::Warning);
  EXPECT_EQ(shown, "text <b>plain</b>");
  EXPECT_EQ(Press("&Yes", BoxButtons::kYesNo), BoxAnswer::kYes);
  EXPECT_EQ(shownIcon, QMessageBox::Question);
  EXPECT_EQ(labels, "&Yes &No ");
  EXPECT_EQ(Press("&No", BoxButtons::kYesNo), BoxAnswer::kNo);
  EXPECT_EQ(Press("", BoxButtons::kYesNo), BoxAnswer::kNo) << "Escape";
  EXPECT_EQ(Press("", BoxButtons::kOk), BoxAnswer::kOk);
  EXPECT_EQ(Press("&Retry", BoxButtons::kAbortRetryIgnore), BoxAnswer::kRetry);
  EXPECT_EQ(labels, "&Abort &Retry &Ignore ");
  EXPECT_EQ(Press("&Ignore", BoxButtons::kAbortRetryIgnore), BoxAnswer::kIgnore);
  const WaitCursor waiting;
  EXPECT_EQ(Press("&Abort", BoxButtons::kAbortRetryIgnore), BoxAnswer::kAbort);
  EXPECT_EQ(cursor, Qt::ArrowCursor);
  EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
}

TEST(Breakable, LongWordsCanBeBrokenAndShortOnesStay) {
  EXPECT_EQ(Breakable("short words only"), "short words only");
  const QString broken = Breakable(QString(150, u'x') + " end");
  EXPECT_EQ(broken.count(QChar(0x200B)), 2);
  EXPECT_EQ(QString(broken).remove(QChar(0x200B)), QString(150, u'x') + " end");
}

}  // namespace
}  // namespace velkor
