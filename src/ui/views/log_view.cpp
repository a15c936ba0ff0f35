#include "ui/views/log_view.h"

#include <QContextMenuEvent>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QTextBlock>
#include <algorithm>
#include <string>

#include "ui/commands/context_menu.h"

namespace velkor::ui {

namespace {

constexpr uint32_t kLogNameKey = kDialogTextKey * 500 + 1003;
constexpr auto kNoteLine = static_cast<MessageKey>(kDialogTextKey * 500 + 1020);
constexpr size_t kLinesAtOnce = 50;
constexpr qint64 kAppendingMilliseconds = 10;

// What a text edit takes for the end of a line or of a paragraph.
bool BreaksLine(QChar character) {
  switch (character.unicode()) {
    case u'\r':
    case u'\v':
    case u'\f':
    case 0x2028:
    case 0x2029:
    case 0xFDD0:
    case 0xFDD1:
      return true;
    default:
      return false;
  }
}

}  // namespace

CStkLogView::CStkLogView(UiContext& context, FrameOperations& frame, Language language,
                         QWidget* parent)
    : QPlainTextEdit(parent),
      context_(context),
      frame_(frame),
      joinLines_(language == Language::kJapanese) {
  setReadOnly(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setUndoRedoEnabled(false);
  setMaximumBlockCount(kMaxLines);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  setTabChangesFocus(true);
  setAcceptDrops(false);
  setAccessibleName(context_.Text(kLogNameKey));
  showLater_.setSingleShot(true);
  showLater_.setInterval(0);
  connect(&showLater_, &QTimer::timeout, this, [this] { ShowSome(); });
  connect(this, &QPlainTextEdit::copyAvailable, this, [this] { frame_.UpdateCommands(); });
  context_.reporter.RegisterLogView(this);
}

CStkLogView::~CStkLogView() {
  context_.reporter.RegisterLogView(nullptr);
}

void CStkLogView::Append(const StkMessage& message) {
  AppendLine(message.text);
}

void CStkLogView::AppendNote(const StkNote& note) {
  std::string text = note.file;
  if (note.line != 0) {
    text += ':' + std::to_string(note.line);
  }
  text += text.empty() ? "" : ": ";
  text += note.text;
  AppendLine(context_.messages.FormatMessageText(kNoteLine, {text}));
}

void CStkLogView::AppendLine(std::string_view text) {
  pending_.push_back(OneLine(text));
  // What more lines would push out of the text at once need not get in.
  if (pending_.size() > static_cast<size_t>(kMaxLines)) {
    pending_.pop_front();
  }
  if (!showLater_.isActive()) {
    showLater_.start();
  }
}

std::optional<CommandState> CStkLogView::StateOf(Command command) {
  switch (command) {
    case Command::kCopy:
      return CommandState{textCursor().hasSelection()};
    case Command::kClearLog:
      return CommandState{blockCount() > 1 || !pending_.empty()};
    default:
      return std::nullopt;
  }
}

void CStkLogView::Execute(Command command) {
  if (command == Command::kCopy) {
    copy();
  } else if (command == Command::kClearLog) {
    ClearAll();
  }
}

void CStkLogView::contextMenuEvent(QContextMenuEvent* event) {
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  AddCommands(
      *menu, context_, {Command::kCopy, Command::kClearLog},
      [this](Command command) { return StateOf(command).value_or(CommandState()); },
      [this](Command command) { Execute(command); });
  ShowPrompts(*menu, *this);
  menu->popup(event->globalPos());
  event->accept();
}

QString CStkLogView::OneLine(std::string_view text) const {
  QString line = context_.Decoded(text);
  if (joinLines_) {
    line.remove(u'\n');
  } else {
    line.replace(u'\n', u' ');
  }
  std::replace_if(line.begin(), line.end(), BreaksLine, QChar(u' '));
  return line;
}

void CStkLogView::ShowSome() {
  QElapsedTimer slice;
  slice.start();
  while (!pending_.empty() && slice.elapsed() < kAppendingMilliseconds) {
    Insert(std::min(pending_.size(), kLinesAtOnce));
  }
  MoveToEnd();
  if (!pending_.empty()) {
    showLater_.start();
  }
  frame_.UpdateCommands();
}

void CStkLogView::Insert(size_t count) {
  QString lines;
  for (size_t i = 0; i < count; ++i) {
    lines += pending_.front();
    lines += u'\n';
    pending_.pop_front();
  }
  QTextCursor end(document());
  end.movePosition(QTextCursor::End);
  end.insertText(lines);
}

void CStkLogView::MoveToEnd() {
  moveCursor(QTextCursor::End);
  ensureCursorVisible();
}

void CStkLogView::ClearAll() {
  pending_.clear();
  clear();
  frame_.UpdateCommands();
}

}  // namespace velkor::ui
