#include "reports/gate/gate_input.h"

#include <algorithm>

#include "reports/compared_analysis.h"

namespace velkor::reports {

FoundFunction FindHandler(const GateInput& input, const std::string& name) {
  for (const ProgramFacts::Handler& handler : input.facts.handlers) {
    if (std::ranges::find(handler.names, name) != handler.names.end()) {
      return {handler.function, {}};
    }
  }
  return FindEntry(input, name);
}

FoundFunction FindEntry(const GateInput& input, const std::string& name) {
  const auto found = input.names.find(name);
  if (found == input.names.end()) {
    return {std::nullopt, "\"" + name + "\" is no function of the project"};
  }
  const NameMeaning& meaning = found->second;
  return meaning.error.empty() ? FoundFunction{meaning.functions.front(), {}}
                               : FoundFunction{std::nullopt, meaning.error};
}

std::string StableName(const AnalysisResult& result, uint32_t function) {
  const std::string_view name = result.Statement(function).value_or(result.SpecName(function));
  return WithoutCloneNumbers(name);
}

}  // namespace velkor::reports
