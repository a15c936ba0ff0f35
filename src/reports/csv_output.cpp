#include "reports/csv_output.h"

#include "core/function_text.h"
#include "reports/terminal_text.h"

namespace velkor::reports {
namespace {

std::string_view YesOrNo(bool value) {
  return value ? "yes" : "no";
}

std::string Row(const AnalysisResult& result, const StkFunction& function) {
  const auto field = [&](std::string_view text) { return CsvField(result.Utf8(text)); };
  std::string row = field(FunctionSpecName(function, result.codePage));
  row += ',' + TotalSizeText(function);
  row += ',' + FrameSizeText(function);
  row += ',' + field(AdjustmentInfoText(function, AdjustmentStyle::kList));
  row += ',';
  if (function.file != nullptr) {
    row += field(function.file->name);
  }
  row += ',';
  row += YesOrNo(function.Is(FN_ROOT));
  row += ',';
  row += YesOrNo(result.bounds.IsComplete(function));
  const BoundState state = result.bounds.State(function);
  const std::string known = std::to_string(result.bounds.Known(function));
  row += ',' + (state == BoundState::kBounded ? known : "");
  row += ',';
  row += BoundStateName(state);
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
  for (const auto& function : result.functions.Functions()) {
    output.Write(Row(result, *function));
  }
}

}  // namespace velkor::reports
