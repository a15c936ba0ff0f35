#include "reports/function_lookup.h"

#include <algorithm>

#include "core/function_text.h"
#include "files/near_words.h"
#include "files/spec_language.h"
#include "files/spec_names.h"

namespace velkor::reports {
namespace {

constexpr size_t kMostNear = 10;
constexpr size_t kLongestCompared = 64;
constexpr size_t kWorstDistance = 2;

template <typename Predicate>
StkFunctionList Select(const StkFunctionTable& functions, Predicate holds) {
  StkFunctionList selected;
  for (const auto& function : functions.Functions()) {
    if (holds(*function)) {
      selected.push_back(function);
    }
  }
  return selected;
}

StkFunctionList WithSymbol(const StkFunctionTable& functions, std::string_view symbol,
                           std::string_view file) {
  const CodePage& codePage = functions.GetCodePage();
  StkFunctionList found = Select(functions, [&](const StkFunction& function) {
    return function.name == symbol &&
           (file.empty() || (function.IsStatic() &&
                             codePage.EqualIgnoreCase(function.file->BaseName(codePage), file)));
  });
  const auto isGlobal = [](const StkFunction* function) { return function->Is(FN_GLOBAL); };
  if (std::any_of(found.begin(), found.end(), isGlobal)) {
    std::erase_if(found, [&](const StkFunction* function) { return !isGlobal(function); });
  }
  return found;
}

// 0 is the best; kNotNear: has nothing in common.
constexpr size_t kNotNear = 100;
size_t Farness(std::string_view candidate, std::string_view wanted, const CodePage& codePage) {
  if (codePage.EqualIgnoreCase(candidate, wanted)) {
    return 0;
  }
  if (candidate.size() <= kLongestCompared && wanted.size() <= kLongestCompared) {
    const size_t distance = EditDistance(candidate, wanted);
    if (distance <= kWorstDistance && distance < wanted.size()) {
      return distance;
    }
  }
  const bool holds = wanted.size() > kWorstDistance && candidate.find(wanted) != candidate.npos;
  return holds ? kWorstDistance + 1 : kNotNear;
}

}  // namespace

StkFunctionList FindFunctions(const StkFunctionTable& functions, std::string_view name) {
  const CodePage& codePage = functions.GetCodePage();
  StkFunctionList found = Select(functions, [&](const StkFunction& function) {
    return FunctionSpecName(function, codePage) == name;
  });
  const SpecName parts = SpecName::OfText(name, codePage);
  const bool further = parts.quoted || parts.file.find_first_of("\\/:") != parts.file.npos;
  if (found.empty() && further) {
    if (StkFunction* named = SpecNames(functions).Find(parts)) {
      return {named};
    }
  }
  if (found.empty() && !parts.bracketed && parts.function.starts_with('_')) {
    found = WithSymbol(functions, parts.function, parts.file);
  }
  if (found.empty()) {
    found = WithSymbol(functions, parts.function, parts.file);
    std::erase_if(found, [](const StkFunction* each) { return !each->Is(FN_PLAIN_SYMBOL); });
  }
  if (found.empty()) {
    found = WithSymbol(functions, "_" + std::string(parts.function), parts.file);
  }
  return found;
}

std::vector<std::string> NearNames(const StkFunctionTable& functions, std::string_view name) {
  const CodePage& codePage = functions.GetCodePage();
  const std::string wanted = SpecName::OfText(name, codePage).function;
  std::vector<std::pair<size_t, const StkFunction*>> near;
  for (const auto& function : functions.Functions()) {
    const size_t farness = Farness(CName(*function), wanted, codePage);
    if (farness != kNotNear) {
      near.emplace_back(farness, function);
    }
  }
  std::stable_sort(near.begin(), near.end(),
                   [](const auto& left, const auto& right) { return left.first < right.first; });
  SpecNames specNames(functions);
  std::vector<std::string> names;
  for (size_t i = 0; i < near.size() && names.size() < kMostNear; ++i) {
    names.push_back(specNames.Shown(*near[i].second));
  }
  return names;
}

std::string LookupError(const StkFunctionTable& functions, std::string_view name,
                        const StkFunctionList& found) {
  std::string error = "\"" + std::string(name) + "\" ";
  std::vector<std::string> names;
  if (found.empty()) {
    error += "is no function of the project";
    names = NearNames(functions, name);
    error += names.empty() ? "" : "; near it: ";
  } else {
    error += "can mean more than one function: ";
    SpecNames specNames(functions);
    for (size_t i = 0; i < found.size() && i < kMostNear; ++i) {
      const StkFunction& function = *found[i];
      names.push_back(specNames.Shown(function) +
                      (function.file != nullptr ? " of " + function.file->name : ""));
    }
  }
  for (size_t i = 0; i < names.size(); ++i) {
    error += (i == 0 ? "" : ", ") + names[i];
  }
  return error;
}

}  // namespace velkor::reports
