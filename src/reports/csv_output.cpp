#include "reports/csv_output.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "reports/function_parts.h"
#include "reports/terminal_text.h"

namespace velkor::reports {
namespace {

std::string_view YesOrNo(bool value) {
  return value ? "yes" : "no";
}

// Of what a spreadsheet takes for a formula, only its first character matters.
bool IsFormula(std::string_view text) {
  constexpr std::string_view kStarts = "=+-@\t";
  return !text.empty() && kStarts.find(text.front()) != kStarts.npos;
}

bool IsFieldAsItIs(std::string_view text) {
  return !IsFormula(text) && std::ranges::all_of(text, [](char c) {
    return c >= 0x20 && c < 0x7F && c != ',' && c != '"';
  });
}

void AppendField(std::string_view text, std::string& row) {
  if (IsFieldAsItIs(text)) {
    row += text;
  } else {
    row += CsvField(text);
  }
  row += ',';
}

// files: their fields, by number.
void AppendRow(const AnalysisResult& result, uint32_t index, const std::vector<std::string>& files,
               std::string& row) {
  const AnalysedFunction& function = result.functions[index];
  AppendField(result.SpecName(index), row);
  row += result.TotalText(index);
  row += ',';
  row += result.FrameText(index);
  row += ',';
  AppendField(result.AdjustmentText(index, AdjustmentStyle::kList), row);
  row += function.file == kNoFile ? std::string_view() : files[function.file];
  row += ',';
  row += YesOrNo(function.Is(FN_ROOT));
  row += ',';
  row += YesOrNo(function.complete);
  row += ',';
  const std::string known = std::to_string(function.known);
  row += function.state == BoundState::kBounded ? known : "";
  row += ',';
  row += BoundStateName(function.state);
  row += ',';
  row += known;
  row += '\n';
}

}  // namespace

std::string CsvField(std::string_view text) {
  std::string shown = OneLine(text);
  if (IsFormula(shown)) {
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

void WriteCsv(const AnalysisResult& result, ResultOutput& output, size_t threads) {
  output.Write("name,total,frame,adjustment,file,top-level,complete,bound,state,known\n");
  std::vector<std::string> files;
  files.reserve(result.files.size());
  std::ranges::transform(result.files, std::back_inserter(files), CsvField);
  FunctionParts{.functions = result.functions.size(),
                .threads = threads,
                .make =
                    [&](uint32_t first, uint32_t end, std::string& rows) {
                      for (uint32_t function = first; function < end; ++function) {
                        AppendRow(result, function, files, rows);
                      }
                    },
                .take = [&](std::string_view rows) { output.Write(rows); }}
      .Run();
}

}  // namespace velkor::reports
