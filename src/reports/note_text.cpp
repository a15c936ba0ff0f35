#include "reports/note_text.h"

namespace velkor::reports {
namespace {

template <typename Note>
std::string LineOf(const Note& note) {
  std::string line = note.file;
  if (note.line != 0) {
    line += ':' + std::to_string(note.line);
  }
  if (note.column != 0) {
    line += ':' + std::to_string(note.column);
  }
  if (!line.empty()) {
    line += ": ";
  }
  line += note.text;
  line += " [";
  line += note.rule;
  return line + ']';
}

}  // namespace

std::string NoteLine(const StkNote& note) {
  return LineOf(note);
}

std::string NoteLine(const AnalysisNote& note) {
  return LineOf(note);
}

}  // namespace velkor::reports
