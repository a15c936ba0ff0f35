#include "readers/library_statements.h"

#include <algorithm>
#include <charconv>
#include <system_error>
#include <utility>

namespace velkor {
namespace embedded {

extern const std::string_view newlibStatements;

}  // namespace embedded

namespace {

constexpr std::string_view kPrefix = "velkor:";

// The next part of a line, up to the comma.
std::string_view TakePart(std::string_view& line) {
  const size_t end = line.find(',');
  std::string_view part = line.substr(0, end);
  line = end == std::string_view::npos ? std::string_view() : line.substr(end + 1);
  part.remove_prefix(std::min(part.find_first_not_of(' '), part.size()));
  return part.substr(0, part.find_last_not_of(' ') + 1);
}

bool TakeKeyword(std::string_view keyword, std::string_view& part) {
  const bool isTaken = part.starts_with(keyword);
  part.remove_prefix(isTaken ? keyword.size() : 0);
  return isTaken;
}

bool IsNumber(std::string_view text, uint32_t& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

struct TableStatement {
  std::string_view name;
  StkAdjustment stated;
  std::vector<std::string_view> callees;
  std::vector<std::string_view> unless;
};

std::optional<TableStatement> StatementOf(std::string_view text) {
  TableStatement line;
  line.name = TakePart(text);
  while (!text.empty()) {
    std::string_view part = TakePart(text);
    if (TakeKeyword("CALL=", part)) {
      line.callees.push_back(part);
    } else if (TakeKeyword("UNLESS=", part)) {
      line.unless.push_back(part);
    } else if (!(TakeKeyword("ADD=", part) && IsNumber(part, line.stated.margin)) &&
               !(TakeKeyword("RECTIME=", part) && IsNumber(part, line.stated.depth))) {
      return std::nullopt;
    }
  }
  return line;
}

}  // namespace

bool IsStatementTable(std::string_view name) {
  return name.starts_with(kPrefix);
}

std::optional<std::string_view> StatementTable(std::string_view name) {
  return name == "velkor:newlib" ? std::optional(embedded::newlibStatements) : std::nullopt;
}

std::unique_ptr<StkByteSource> LibraryStatements::Open(const FileSystem::GiveUp& /*giveUp*/) {
  return std::make_unique<StkMemorySource>(text_);
}

const StkFunctionList& LibraryStatements::Named(const StkFunctionTable& table,
                                                std::string_view name) {
  if (!std::exchange(isIndexed_, true)) {
    for (StkFunction* function : table.Functions()) {
      if (function->source == FunctionSource::kProgram) {
        byName_[function->name.substr(0, function->name.find('.', 1))].push_back(function);
      }
    }
  }
  return byName_[name];
}

bool LibraryStatements::ParseLine(StkFunctionTable& table, uint32_t lineNumber,
                                  std::string_view text, uint64_t /*length*/,
                                  Event& /*stopEvent*/) {
  if (text.empty() || text.starts_with('#')) {
    return true;
  }
  std::optional<TableStatement> line = StatementOf(text);
  if (!line) {
    return false;
  }
  StkFunctionList callees;
  for (const std::string_view name : line->callees) {
    const StkFunctionList& named = Named(table, name);
    callees.insert(callees.end(), named.begin(), named.end());
  }
  const bool isExcluded = std::ranges::any_of(
      line->unless, [&](std::string_view name) { return !Named(table, name).empty(); });
  if (isExcluded || (callees.empty() && !line->callees.empty())) {
    return true;
  }
  for (StkFunction* function : StkFunctionList(Named(table, line->name))) {
    if (function->HasStatement()) {
      continue;
    }
    StkAdjustment stated;
    stated.margin = line->stated.margin;
    stated.depth = line->stated.depth;
    stated.line = lineNumber;
    StkFunctionList others;
    for (StkFunction* callee : callees) {
      (function->CallsDirectly(*callee) ? stated.directCallees : others).push_back(callee);
    }
    stated.SetCallees(others, table.GetCodePage());
    table.NoteBrought(*function, Path(), lineNumber);
    State(table, *function, std::move(stated));
  }
  return true;
}

}  // namespace velkor
