#include "cli/terminal_boxes.h"

namespace velkor::cli {

BoxAnswer TerminalBoxes::Show(const StkMessage& message, BoxIcon, BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::kAbortRetryIgnore:
      return static_cast<BoxAnswer>(stopAnswer_);
    case BoxButtons::kYesNo:
      return BoxAnswer::kYes;
    case BoxButtons::kOk:
      break;
  }
  if (message.GetSeverity() == Severity::kError) {
    log_.Say(message.text);
  }
  return BoxAnswer::kOk;
}

}  // namespace velkor::cli
