#pragma once

#include <QPlainTextEdit>
#include <QTimer>
#include <deque>
#include <optional>
#include <string_view>

#include "messages/log_view.h"
#include "platform/limits.h"
#include "ui/commands/command_target.h"
#include "ui/commands/frame_operations.h"
#include "ui/language.h"
#include "ui/ui_context.h"

namespace velkor::ui {

// The record of everything that was reported, one message or note a line, the newest last; of very
// many the oldest disappear. Read-only. Registered with the reporter from its creation to its
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

 protected:
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  QString OneLine(std::string_view text) const;
  void AppendLine(std::string_view text);
  void ShowSome();
  void Insert(size_t count);
  void MoveToEnd();
  void ClearAll();

  UiContext& context_;
  FrameOperations& frame_;
  const bool joinLines_;         // no blank where a message breaks its line
  std::deque<QString> pending_;  // not yet in the text
  QTimer showLater_;
};

}  // namespace velkor::ui
