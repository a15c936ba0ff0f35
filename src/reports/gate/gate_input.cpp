#include "reports/gate/gate_input.h"

#include <algorithm>
#include <array>

namespace velkor::reports {
namespace {

// Of "step.part.0": "step".
std::string_view WithoutCloneMarks(std::string_view name) {
  constexpr std::array<std::string_view, 5> kMarks = {".part.", ".isra.", ".constprop.",
                                                      ".lto_priv.", ".cold"};
  size_t end = name.size();
  for (const std::string_view mark : kMarks) {
    end = std::min(end, name.find(mark, 1));
  }
  return name.substr(0, end);
}

}  // namespace

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
  return std::string(WithoutCloneMarks(name));
}

}  // namespace velkor::reports
