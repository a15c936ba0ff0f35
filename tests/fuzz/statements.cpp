#include "fuzz/statements.h"

#include <algorithm>
#include <string>

#include "files/spec_line_parser.h"

namespace velkor::testing {

namespace {

std::vector<uint32_t> Indices(const StkFunctionList& list) {
  std::vector<uint32_t> indices;
  for (const StkFunction* function : list) {
    indices.push_back(function->index);
  }
  std::sort(indices.begin(), indices.end());
  return indices;
}

}  // namespace

Statements InForce(const StkFunctionTable& table) {
  Statements statements(table.Count());
  for (const auto& function : table.Functions()) {
    if (function->adjustment != nullptr) {
      const Statement statement{function->adjustment->margin, function->adjustment->depth,
                                Indices(function->extraCallees)};
      if (!statement.StatesNothing()) {
        statements[function->index] = statement;
      }
    }
  }
  return statements;
}

Statements Effective(Statements statements, const StkFunctionTable& table) {
  for (const auto& function : table.Functions()) {
    std::optional<Statement>& statement = statements[function->index];
    if (statement && !function->Is(FN_RECURSIVE)) {
      statement->depth = kNoDepth;
    }
    if (statement && statement->StatesNothing()) {
      statement.reset();
    }
  }
  return statements;
}

StatedFile::StatedFile(std::string_view text, const StkFunctionTable& table,
                       const StkMessages& messages)
    : stated_(table.Count()) {
  while (!text.empty()) {
    const size_t length = std::min(text.find_first_of("\r\n"), text.size());
    TakeLine(text.substr(0, length), table, messages);
    text.remove_prefix(std::min(length + 1, text.size()));
  }
}

bool StatedFile::IsCoveredBy(const Statements& inForce) const {
  for (size_t i = 0; i < stated_.size(); ++i) {
    if (stated_[i] && stated_[i] != inForce[i]) {
      return false;
    }
  }
  return !hasStray_;
}

void StatedFile::TakeLine(std::string_view line, const StkFunctionTable& table,
                          const StkMessages& messages) {
  const std::string path = "app.psg";
  SpecLineParser parser({table, SpecificationKind::kSystemFile, path, 1, messages}, line);
  const bool understood = parser.Parse();
  const StkFunction* function = parser.Function();
  const bool states = line.find(',') != std::string_view::npos;
  if (!understood || (function != nullptr && stated_[function->index])) {
    hasStray_ |= states;
  } else if (function != nullptr && parser.AttributeSeen()) {
    stated_[function->index] =
        Statement{parser.Margin(), parser.Depth(), Indices(parser.Callees())};
  }
}

}  // namespace velkor::testing
