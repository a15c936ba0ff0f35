#include "cli/terminal_boxes.h"

namespace velkor {

BoxAnswer TerminalBoxes::Show(std::string_view text, BoxIcon, BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::kAbortRetryIgnore:
      // The message that the question is about has just been logged.
      return static_cast<BoxAnswer>(stopAnswer_);
    case BoxButtons::kYesNo:
      return BoxAnswer::kYes;
    case BoxButtons::kOk:
      break;
  }
  // A warning's box repeats its log line; a fatal message has no other place than its box.
  if (log_.Lines().empty() || log_.Lines().back() != text) {
    log_.Say(text);
  }
  return BoxAnswer::kOk;
}

}  // namespace velkor
