#include "reports/text_output.h"

#include <fmt/format.h>

#include "reports/chain_output.h"
#include "reports/head_output.h"
#include "reports/list_output.h"
#include "reports/note_text.h"
#include "reports/terminal_text.h"

namespace velkor::reports {
namespace {

void WriteNotes(const AnalysisResult& result, ResultOutput& output) {
  if (result.notes.empty()) {
    return;
  }
  output.Write(fmt::format("Notes: {}\n", result.notes.size()));
  for (const AnalysisNote& note : result.notes) {
    output.Write("  " + OneLine(NoteLine(note)) + "\n");
  }
}

}  // namespace

void WriteAllText(const AnalysisResult& result, bool full, ResultOutput& output) {
  WriteHead(result, output);
  WriteChains(result, full, output);
  WriteLists(result, output);
  WriteNotes(result, output);
}

}  // namespace velkor::reports
