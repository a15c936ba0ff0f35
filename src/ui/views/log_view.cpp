#include "ui/views/log_view.h"

#include <QContextMenuEvent>
#include <QElapsedTimer>
#include <QPainter>
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

// What a line's block knows beside its text: how much it matters is the block's state.
class PlaceData : public QTextBlockUserData {
 public:
  explicit PlaceData(CStkLogView::Place place) : place_(std::move(place)) {}
  const CStkLogView::Place& Get() const { return place_; }

 private:
  const CStkLogView::Place place_;
};

LogLevel LevelOf(const StkMessage& message) {
  switch (message.GetSeverity()) {
    case Severity::kError:
      return LogLevel::kError;
    case Severity::kWarning:
      return LogLevel::kWarning;
    case Severity::kInformation:
      break;
  }
  return LogLevel::kLine;
}

LogLevel LevelOf(const QTextBlock& block) {
  return static_cast<LogLevel>(std::max(0, block.userState()));
}

std::optional<LogLevel> LeastOf(Command command) {
  switch (command) {
    case Command::kLogAll:
      return LogLevel::kLine;
    case Command::kLogNotes:
      return LogLevel::kNote;
    case Command::kLogWarnings:
      return LogLevel::kWarning;
    default:
      return std::nullopt;
  }
}

}  // namespace

// Where the signs stand.
class CStkLogView::Margin : public QWidget {
 public:
  explicit Margin(CStkLogView& log) : QWidget(&log), log_(log) {}

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    log_.PaintMargin(painter);
  }

 private:
  CStkLogView& log_;
};

CStkLogView::CStkLogView(UiContext& context, FrameOperations& frame, Language language,
                         QWidget* parent)
    : QPlainTextEdit(parent),
      context_(context),
      frame_(frame),
      joinLines_(language == Language::kJapanese),
      margin_(new Margin(*this)) {
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
  connect(this, &QPlainTextEdit::updateRequest, margin_, qOverload<>(&QWidget::update));
  connect(this, &QPlainTextEdit::cursorPositionChanged, this, [this] { frame_.UpdateCommands(); });
  context_.reporter.RegisterLogView(this);
}

CStkLogView::~CStkLogView() {
  context_.reporter.RegisterLogView(nullptr);
}

void CStkLogView::Append(const StkMessage& message) {
  AppendLine(message.text, LevelOf(message), {message.file, message.line});
}

void CStkLogView::AppendNote(const StkNote& note) {
  std::string text = note.file;
  if (note.line != 0) {
    text += ':' + std::to_string(note.line);
  }
  text += text.empty() ? "" : ": ";
  text += note.text;
  AppendLine(context_.messages.FormatMessageText(kNoteLine, {text}), LogLevel::kNote,
             {note.file, note.line});
}

void CStkLogView::AppendLine(std::string_view text, LogLevel level, Place place) {
  pending_.push_back({OneLine(text), level, std::move(place)});
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
    case Command::kGoToSource:
      return CommandState{!CurrentPlace().file.empty()};
    default:
      break;
  }
  if (const std::optional<LogLevel> least = LeastOf(command)) {
    return CommandState{true, least == least_};
  }
  return std::nullopt;
}

void CStkLogView::Execute(Command command) {
  if (command == Command::kCopy) {
    copy();
  } else if (command == Command::kClearLog) {
    ClearAll();
  } else if (command == Command::kGoToSource) {
    const Place place = CurrentPlace();
    frame_.GoToPlace(place.file, place.line);
  } else if (const std::optional<LogLevel> least = LeastOf(command)) {
    ShowFrom(*least);
  }
}

CStkLogView::Place CStkLogView::CurrentPlace() const {
  const auto* kept = static_cast<const PlaceData*>(textCursor().block().userData());
  return kept ? kept->Get() : Place();
}

// The empty line at the end stays: it is where the next one goes.
void CStkLogView::ShowFrom(LogLevel least) {
  least_ = least;
  for (QTextBlock block = document()->firstBlock(); block.isValid(); block = block.next()) {
    block.setVisible(!block.next().isValid() || LevelOf(block) >= least_);
  }
  document()->markContentsDirty(0, document()->characterCount());
  MoveToEnd();
  viewport()->update();
  margin_->update();
  frame_.UpdateCommands();
}

void CStkLogView::keyPressEvent(QKeyEvent* event) {
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (isEnter && !CurrentPlace().file.empty()) {
    Execute(Command::kGoToSource);
    event->accept();
    return;
  }
  QPlainTextEdit::keyPressEvent(event);
}

void CStkLogView::contextMenuEvent(QContextMenuEvent* event) {
  // What is about a line is about the one under the pointer; a selection stays.
  if (event->reason() == QContextMenuEvent::Mouse && !textCursor().hasSelection()) {
    setTextCursor(cursorForPosition(event->pos()));
  }
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  AddCommands(
      *menu, context_,
      {Command::kCopy, Command::kClearLog, Command::kGoToSource, Command::kLogAll,
       Command::kLogNotes, Command::kLogWarnings},
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
  QString text;
  std::vector<Line> lines;
  lines.reserve(count);
  for (size_t i = 0; i < count; ++i) {
    lines.push_back(std::move(pending_.front()));
    pending_.pop_front();
    text += lines.back().text;
    text += u'\n';
  }
  QTextCursor end(document());
  end.movePosition(QTextCursor::End);
  end.insertText(text);
  Describe(document()->lastBlock(), lines);
}

// Upwards from the empty line at the end: the oldest may be gone already.
void CStkLogView::Describe(QTextBlock last, const std::vector<Line>& lines) {
  bool hides = false;
  QTextBlock block = last.previous();
  for (auto line = lines.rbegin(); line != lines.rend() && block.isValid(); ++line) {
    block.setUserState(static_cast<int>(line->level));
    block.setUserData(line->place.file.empty() ? nullptr : new PlaceData(line->place));
    if (line->level < least_) {
      block.setVisible(false);
      hides = true;
    }
    block = block.previous();
  }
  last.setUserState(static_cast<int>(LogLevel::kLine));
  last.setUserData(nullptr);
  if (hides) {
    const int begin = block.isValid() ? block.position() : 0;
    document()->markContentsDirty(begin, document()->characterCount() - begin);
  }
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

void CStkLogView::resizeEvent(QResizeEvent* event) {
  QPlainTextEdit::resizeEvent(event);
  PlaceMargin();
}

void CStkLogView::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  if (event->type() == QEvent::FontChange && margin_) {
    PlaceMargin();
  }
}

void CStkLogView::PlaceMargin() {
  const int width = fontMetrics().height();
  if (viewportMargins().left() != width) {
    setViewportMargins(width, 0, 0, 0);
  }
  const QRect area = contentsRect();
  margin_->setGeometry(area.left(), area.top(), width, viewport()->height());
}

void CStkLogView::PaintMargin(QPainter& painter) const {
  const double size = fontMetrics().ascent();
  QTextBlock block = firstVisibleBlock();
  QRectF row = blockBoundingGeometry(block).translated(contentOffset());
  while (block.isValid() && row.top() <= margin_->height()) {
    if (block.isVisible()) {
      const QRectF sign(2, row.top() + 2, size - 2, size - 2);
      PaintLogSign(painter, sign, LevelOf(block), palette());
    }
    block = block.next();
    row = blockBoundingGeometry(block).translated(contentOffset());
  }
}

}  // namespace velkor::ui
