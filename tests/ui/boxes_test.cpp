#include <QAbstractButton>
#include <QEventLoop>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include "main_window.h"

namespace velkor::ui {
namespace {

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
    Choose(Command::kExit);
    EXPECT_FALSE(HasJobs() || app->Frame().isVisible());
    EXPECT_NE(Document().FunctionTable(), nullptr) << "the open question is about it";
  };
  LoadErrors();
  ASSERT_TRUE(WaitUntil([this] { return closedCount == 1 && !open; }));
  HandleEvents();
  EXPECT_EQ(boxes.boxes.size(), 1U);
}

class RealBoxes : public ::testing::Test {
 protected:
  // Presses the button of that text, or only looks when it is empty.
  BoxAnswer Press(const QString& text, BoxButtons buttons) {
    QTimer::singleShot(0, [this, text] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      shown = box->text();
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
    return boxes.Show({.text = "text <b>plain</b>"}, BoxIcon::kQuestion, buttons);
  }

  CodePage codePage = CodePage::Utf8();
  StkMessages messages = WindowMessages(codePage, Language::kEnglish);
  WindowBoxes boxes{messages, "velkor"};
  QString shown;
};

TEST_F(RealBoxes, ButtonsGiveTheirAnswers) {
  EXPECT_EQ(Press("OK", BoxButtons::kOk), BoxAnswer::kOk);
  EXPECT_EQ(shown, "text <b>plain</b>");
  EXPECT_EQ(Press("&Yes", BoxButtons::kYesNo), BoxAnswer::kYes);
  EXPECT_EQ(Press("&No", BoxButtons::kYesNo), BoxAnswer::kNo);
  EXPECT_EQ(Press("", BoxButtons::kYesNo), BoxAnswer::kNo) << "Escape";
  EXPECT_EQ(Press("", BoxButtons::kOk), BoxAnswer::kOk);
  EXPECT_EQ(Press("&Retry", BoxButtons::kAbortRetryIgnore), BoxAnswer::kRetry);
  EXPECT_EQ(Press("&Ignore", BoxButtons::kAbortRetryIgnore), BoxAnswer::kIgnore);
  EXPECT_EQ(Press("&Abort", BoxButtons::kAbortRetryIgnore), BoxAnswer::kAbort);
}

}  // namespace
}  // namespace velkor::ui
