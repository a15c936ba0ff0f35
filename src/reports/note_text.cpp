#include "reports/note_text.h"

namespace velkor::reports {

std::string NoteLine(const StkNote& note) {
  std::string line = note.file;
  if (note.line != 0) {
    line += ':' + std::to_string(note.line);
  }
  if (!line.empty()) {
    line += ": ";
  }
  line += note.text;
  line += " [";
  line += note.rule;
  return line + ']';
}

}  // namespace velkor::reports
