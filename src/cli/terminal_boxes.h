#pragma once

#include "cli/terminal_log.h"
#include "messages/boxes.h"
#include "messages/stop_question.h"

namespace velkor::cli {

// Message boxes where nobody can press a button: their texts stand in the log, and questions are
// answered as the command line says. User-interface thread.
class TerminalBoxes : public MessageBoxes {
 public:
  TerminalBoxes(TerminalLog& log, StopAnswer stopAnswer) : log_(log), stopAnswer_(stopAnswer) {}

  BoxAnswer Show(const StkMessage& message, BoxIcon icon, BoxButtons buttons) override;

 private:
  TerminalLog& log_;
  const StopAnswer stopAnswer_;
};

}  // namespace velkor::cli
