#pragma once

#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTimer>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "messages/log_view.h"
#include "platform/limits.h"
#include "ui/commands/command_target.h"
#include "ui/commands/frame_operations.h"
#include "ui/language.h"
#include "ui/ui_context.h"
#include "ui/views/log_marks.h"

namespace velkor::ui {

// The record of everything that was reported, one message or note a line, the newest last; of very
// many the oldest disappear. A sign before a line tells how much it matters; those that matter less
// can be left out. Read-only. Registered with the reporter from its creation to its
// destruction.
//
// New lines reach the text a little later, a few at a time: many of them must not keep the window
// from answering.
class CStkLogView : public QPlainTextEdit, public LogView, public CommandTarget {
 public:
  // Lines of the text, with the empty one at its end.
  static constexpr int kMaxLines = kMaxTextLines;

  CStkLogView(UiContext& context, FrameOperations& frame, Language language,
              QWidget* parent = nullptr);
  ~CStkLogView() override;

  void Append(const StkMessage& message) override;
  void AppendNote(const StkNote& note) override;

  std::optional<CommandState> StateOf(Command command) override;
  void Execute(Command command) override;

  // Lines that matter less are not shown. They stay, and come back.
  LogLevel Least() const { return least_; }
  void ShowFrom(LogLevel least);
  // A place that a line is about, and the line has.
  struct Place {
    std::string file;   // a path of the analysis, in bytes of the code page; empty: none
    uint32_t line = 0;  // from 1; 0: none
  };
  Place CurrentPlace() const;

 protected:
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  class Margin;
  struct Line {
    QString text;
    LogLevel level = LogLevel::kLine;
    Place place;
  };

  QString OneLine(std::string_view text) const;
  void AppendLine(std::string_view text, LogLevel level, Place place);
  void ShowSome();
  void Insert(size_t count);
  void Describe(QTextBlock last, const std::vector<Line>& lines);
  void MoveToEnd();
  void ClearAll();
  void PlaceMargin();
  void PaintMargin(QPainter& painter) const;

  UiContext& context_;
  FrameOperations& frame_;
  const bool joinLines_;  // no blank where a message breaks its line
  Margin* margin_;        // owned by the Qt parent
  LogLevel least_ = LogLevel::kLine;
  std::deque<Line> pending_;  // not yet in the text
  QTimer showLater_;
};

}  // namespace velkor::ui
