#include "reports/gate/gate_names.h"

#include "files/spec_names.h"
#include "reports/function_lookup.h"

namespace velkor::reports {
namespace {

std::vector<std::string_view> NamesIn(const Configuration& configuration) {
  std::vector<std::string_view> names;
  const auto add = [&](const std::vector<Configuration::Name>& more) {
    for (const Configuration::Name& name : more) {
      names.push_back(name.text);
    }
  };
  for (const Configuration::Stack& stack : configuration.stacks) {
    add(stack.entries);
  }
  if (configuration.interrupts) {
    add(configuration.interrupts->ignore);
    if (configuration.interrupts->levels) {
      for (const std::vector<Configuration::Name>& level : *configuration.interrupts->levels) {
        add(level);
      }
    }
  }
  return names;
}

NameMeaning MeaningOf(std::string_view text, const StkFunctionTable& functions, SpecNames& names) {
  const CodePage& codePage = functions.GetCodePage();
  const std::string written = codePage.FromUtf8(text).value_or("");
  const SpecName name = SpecName::OfText(written, codePage);
  const StkFunction* found = names.Find(name);
  if (found != nullptr && !names.IsAmbiguous(name, *found)) {
    return {{found->index}, {}};
  }
  NameMeaning meaning;
  StkFunctionList several;
  if (found != nullptr) {
    several = functions.Namesakes(name.function);
  }
  for (const StkFunction* each : several) {
    meaning.functions.push_back(each->index);
  }
  meaning.error = codePage.ToUtf8(LookupError(functions, written, several));
  return meaning;
}

}  // namespace

NameMeanings MeaningsOf(const Configuration& configuration, const std::vector<std::string>& more,
                        const StkFunctionTable& functions) {
  SpecNames names(functions);
  std::vector<std::string_view> asked = NamesIn(configuration);
  asked.insert(asked.end(), more.begin(), more.end());
  NameMeanings meanings;
  for (const std::string_view text : asked) {
    if (!meanings.contains(text)) {
      meanings.emplace(text, MeaningOf(text, functions, names));
    }
  }
  return meanings;
}

}  // namespace velkor::reports
