#include "document/system_file_statements.h"

#include <utility>

#include "core/function_sorting.h"
#include "files/byte_source.h"
#include "files/spec_line_parser.h"
#include "files/text_reader.h"
#include "platform/limits.h"

namespace velkor {

bool SystemFileStatements::Read(std::string_view text) {
  StkMemorySource source(text);
  StkTextReader reader(source);
  TextLine line;
  for (uint32_t number = 1; reader.ReadLine(line, kTextBufferSize); ++number) {
    if (number > kMaxTextLines || line.length > kMaxTextLength || !Take(number, line.text)) {
      return false;
    }
  }
  for (const BaseLines::Line& each : baseLines_.Lines()) {
    if (baseLines_.HoldsForNone(each)) {
      stale_.push_back({each.text, each.stated.line, each.name, nullptr});
    }
  }
  return true;
}

const StkAdjustment* SystemFileStatements::Of(const StkFunction& function) const {
  const auto found = byFunction_.find(&function);
  return found == byFunction_.end() ? nullptr : &found->second;
}

bool SystemFileStatements::Take(uint32_t number, std::string_view text) {
  SpecLineParser line(
      {functions_, names_, SpecificationKind::kSystemFile, path_, number, messages_}, text);
  if (!line.Parse()) {
    return TakeError(line, number, text);
  }
  if (baseLines_.Earlier(line)) {
    return false;
  }
  baseLines_.TakeName(line);
  if (!line.StatesSomething()) {
    return true;
  }
  baseLines_.Take(line, number, text);
  if (!line.Clones().empty()) {
    return true;
  }
  StkAdjustment adjustment;
  adjustment.margin = line.Margin();
  adjustment.depth = line.Depth();
  adjustment.line = number;
  adjustment.SetCallees(line.Callees(), functions_.GetCodePage());
  adjustment.directCallees = line.DirectCallees();
  return Join(byFunction_[line.Function()], std::move(adjustment));
}

bool SystemFileStatements::TakeError(const SpecLineParser& line, uint32_t number,
                                     std::string_view text) {
  const MessageKey error = line.Error().key;
  if (error != MessageKey::kW9410 && error != MessageKey::kW9418) {
    return false;
  }
  baseLines_.TakeName(line);
  StkFunction* function = line.Clones().empty() ? line.Function() : nullptr;
  stale_.push_back({std::string(text), number, std::string(line.Missing()), function});
  return true;
}

// False for a second line that adjusts the function.
bool SystemFileStatements::Join(StkAdjustment& known, StkAdjustment line) {
  StkFunctionList direct = std::move(known.directCallees);
  for (StkFunction* callee : line.directCallees) {
    InsertByName(direct, *callee, functions_.GetCodePage());
  }
  const bool first = !known.callees || !known.Adjusts();
  const bool taken = first || !line.Adjusts();
  if (first) {
    known = std::move(line);
  }
  known.directCallees = std::move(direct);
  return taken;
}

}  // namespace velkor
