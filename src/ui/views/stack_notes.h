#pragma once

#include <QString>
#include <functional>

#include "document/document.h"
#include "reports/gate/gate.h"
#include "ui/answer/answer_keeper.h"
#include "ui/ui_context.h"

namespace velkor::ui {

// Tells what the stacks of a velkor.toml need: in the log below the last line of each analysis, and
// in short wherever shown puts it, also after each change of an adjustment. Nothing for an input
// that states no stacks.
class StackNotes : public View {
 public:
  using Show = std::function<void(const QString& summary)>;

  // The keeper outlives it.
  StackNotes(UiContext& context, AnswerKeeper& keeper, Show show);
  ~StackNotes() override;
  StackNotes(const StackNotes&) = delete;
  StackNotes& operator=(const StackNotes&) = delete;

  void OnUpdate(ViewHint hint) override;

 private:
  void Take(const AnswerKeeper::Answer& answer);
  void Log(const reports::GateOutcome& outcome) const;
  void LogStack(const reports::GateStack& stack) const;
  QString Summary(const reports::GateOutcome& outcome) const;

  UiContext& context_;
  const Show show_;
  bool logsNext_ = false;  // an analysis, or a reading, has ended that the log has no line of yet
};

}  // namespace velkor::ui
