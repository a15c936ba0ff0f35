#include "reports/function_texts.h"

#include "core/function_text.h"

namespace velkor::reports {
namespace {

constexpr size_t kLongestName = 500;
constexpr size_t kLongestMarks = 2;

}  // namespace

void FunctionTexts::Make(std::span<StkFunction* const> functions) {
  texts_.Clear();
  for (const StkFunction* function : functions) {
    Add(*function);
  }
}

void FunctionTexts::Add(const StkFunction& function) {
  texts_.names.Add(codePage_.ToUtf8(function.name));
  if (!function.ShownName().empty()) {
    texts_.shownNames.Add(function.index, codePage_.ToUtf8(function.ShownName()));
  }
  if (function.Is(FN_DEFINED) && !function.IsStatic()) {
    AddSpecName(function, CName(function));
  } else {
    const std::string specName = FunctionSpecName(function, codePage_);
    if (specName != CName(function)) {
      texts_.specNames.Add(function.index, codePage_.ToUtf8(specName));
    }
    AddSpecName(function, specName);
  }
}

void FunctionTexts::AddSpecName(const StkFunction& function, std::string_view specName) {
  if (!specNames_.IsStatement(specName, function)) {
    const std::string statement = specNames_.Statement(function).value_or("");
    if (statement != specName) {
      texts_.statements.Add(function.index, codePage_.ToUtf8(statement));
    }
  }
  if (table_.SharesShownName(function) && countOfName_.at(std::string(specName)) > 1) {
    texts_.symbolsToTell.Add(function.index, codePage_.ToUtf8(function.name));
  }
  if (specName.size() + kLongestMarks > kLongestName) {
    AddCutName(function, specName, texts_.cutSpecNames);
    AddCutName(function, std::string(specName) + DisplayMarks(function.flags),
               texts_.cutDisplayNames);
  }
}

void FunctionTexts::AddCutName(const StkFunction& function, std::string_view name,
                               TextsOfFew& cutNames) const {
  if (name.size() > kLongestName) {
    const size_t kept = codePage_.CutLength(name, kLongestName);
    cutNames.Add(function.index, codePage_.ToUtf8(name.substr(0, kept)) + "...");
  }
}

}  // namespace velkor::reports
