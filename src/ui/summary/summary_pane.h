#pragma once

#include <QLabel>
#include <QSplitter>
#include <QWidget>
#include <functional>
#include <optional>

#include "ui/answer/answer_keeper.h"
#include "ui/commands/command_target.h"
#include "ui/commands/frame_operations.h"
#include "ui/summary/summary_rows.h"
#include "ui/summary/summary_table.h"
#include "ui/ui_context.h"

namespace velkor::ui {

// The answer above the views: in one line what is the largest; the stacks and the top-level
// functions by what they need, each leading to its node of the tree; what to state next, each
// leading to the Adjust Stack Size dialog; findings and notes.
class SummaryPane : public QWidget, public CommandTarget {
 public:
  // show: selects a function in the tree. All outlive the pane.
  SummaryPane(UiContext& context, AnswerKeeper& keeper, FrameOperations& frame,
              std::function<void(StkFunction&)> show, QWidget* parent = nullptr);

  std::optional<CommandState> StateOf(Command command) override;
  void Execute(Command command) override;

  SummaryTable& Needs() { return *needs_; }
  SummaryTable& Wanted() { return *wanted_; }
  QString LeadText() const { return lead_->text(); }

 private:
  void Take(const AnswerKeeper::Answer& answer);
  // Of the table that has the focus.
  StkFunction* CurrentFunction() const;
  // None while a job has the functions.
  StkFunction* FunctionOf(std::optional<uint32_t> index) const;

  UiContext& context_;
  AnswerKeeper& keeper_;
  FrameOperations& frame_;
  SummaryRows rows_;
  // Owned by their Qt parents.
  QLabel* lead_;
  QSplitter* tables_;
  SummaryTable* needs_;
  SummaryTable* wanted_;
};

}  // namespace velkor::ui
