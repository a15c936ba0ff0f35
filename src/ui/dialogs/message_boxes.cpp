#include "ui/dialogs/message_boxes.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <vector>

#include "ui/commands/commands.h"
#include "ui/dialogs/dialog_controls.h"
#include "ui/shown_text.h"

namespace velkor::ui {

namespace {

constexpr uint32_t kButtonTextKey = kDialogTextKey * 500;
constexpr int kLongestWord = 60;
constexpr QChar kBreakHere(0x200B);

std::vector<BoxAnswer> AnswersOf(BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::kYesNo:
      return {BoxAnswer::kYes, BoxAnswer::kNo};
    case BoxButtons::kAbortRetryIgnore:
      return {BoxAnswer::kAbort, BoxAnswer::kRetry, BoxAnswer::kIgnore};
    case BoxButtons::kOk:
      break;
  }
  return {BoxAnswer::kOk};
}

// A box may open in the middle of work that shows the wait cursor.
class ArrowCursor {
 public:
  ArrowCursor() { QGuiApplication::setOverrideCursor(Qt::ArrowCursor); }
  ~ArrowCursor() { QGuiApplication::restoreOverrideCursor(); }
  ArrowCursor(const ArrowCursor&) = delete;
  ArrowCursor& operator=(const ArrowCursor&) = delete;
};

// Buttons of one role keep their order on every desktop.
BoxAnswer Ask(QMessageBox& box, const std::vector<BoxAnswer>& answers,
              const StkMessages& messages) {
  std::vector<QAbstractButton*> buttons;
  for (const BoxAnswer answer : answers) {
    const MessageKey key{kButtonTextKey + static_cast<uint32_t>(answer)};
    buttons.push_back(
        new DialogButton(ForScreen(messages.Text(key), messages.GetCodePage()), &box));
    box.addButton(buttons.back(), QMessageBox::ActionRole);
  }
  box.setDefaultButton(static_cast<QPushButton*>(buttons.front()));
  // A stop question is answered with one of its buttons and with nothing else.
  if (answers.size() < 3) {
    box.setEscapeButton(buttons.back());
  }
  box.exec();
  for (size_t i = 0; i < buttons.size(); ++i) {
    if (box.clickedButton() == buttons[i]) {
      return answers[i];
    }
  }
  return answers.size() == 3 ? BoxAnswer::kAbort : answers.back();
}

}  // namespace

WindowBoxes::WindowBoxes(const StkMessages& messages, std::string title)
    : messages_(messages), title_(std::move(title)) {}

BoxAnswer WindowBoxes::Show(const StkMessage& message, BoxIcon icon, BoxButtons buttons) {
  while (QWidget* popup = QApplication::activePopupWidget()) {
    popup->close();
  }
  const ArrowCursor arrow;
  QMessageBox box(icon == BoxIcon::kQuestion ? QMessageBox::Question : QMessageBox::Warning,
                  ForScreen(title_, messages_.GetCodePage()), {}, QMessageBox::NoButton, Parent());
  box.setTextFormat(Qt::PlainText);
  box.setText(Breakable(ForScreen(message.text, messages_.GetCodePage())));
  return Ask(box, AnswersOf(buttons), messages_);
}

QWidget* WindowBoxes::Parent() const {
  if (QWidget* modal = QApplication::activeModalWidget()) {
    return modal;
  }
  return mainWindow_ && mainWindow_->isVisible() ? mainWindow_.data() : nullptr;
}

QString Breakable(const QString& text) {
  QString result;
  int wordLength = 0;
  for (const QChar character : text) {
    if (wordLength >= kLongestWord && !character.isLowSurrogate()) {
      result += kBreakHere;
      wordLength = 0;
    }
    result += character;
    wordLength = character.isSpace() ? 0 : wordLength + 1;
  }
  return result;
}

}  // namespace velkor::ui
