#include "reports/csv_output.h"

#include "reports/terminal_text.h"

namespace velkor::reports {
namespace {

std::string_view YesOrNo(bool value) {
  return value ? "yes" : "no";
}

std::string Row(const AnalysisResult& result, uint32_t index) {
  const AnalysedFunction& function = result.functions[index];
  std::string row = CsvField(result.SpecName(index)) + ',';
  row += CsvField(result.TotalText(index)) + ',';
  row += CsvField(result.FrameText(index)) + ',';
  row += CsvField(result.AdjustmentText(index, AdjustmentStyle::kList)) + ',';
  row += CsvField(result.File(function.file)) + ',';
  row += YesOrNo(function.Is(FN_ROOT));
  row += ',';
  row += YesOrNo(function.complete);
  const std::string known = std::to_string(function.known);
  row += ',' + (function.state == BoundState::kBounded ? known : "");
  row += ',';
  row += BoundStateName(function.state);
  row += ',' + known;
  row += '\n';
  return row;
}

}  // namespace

std::string CsvField(std::string_view text) {
  std::string shown = OneLine(text);
  if (!shown.empty() && std::string_view("=+-@\t").find(shown.front()) != std::string_view::npos) {
    shown.insert(shown.begin(), '\'');
  }
  if (shown.find_first_of(",\"") == std::string::npos) {
    return shown;
  }
  std::string quoted = "\"";
  for (const char c : shown) {
    quoted += c;
    if (c == '"') {
      quoted += c;
    }
  }
  return quoted + '"';
}

void WriteCsv(const AnalysisResult& result, ResultOutput& output) {
  output.Write("name,total,frame,adjustment,file,top-level,complete,bound,state,known\n");
  for (uint32_t function = 0; function < result.functions.size(); ++function) {
    output.Write(Row(result, function));
  }
}

}  // namespace velkor::reports
