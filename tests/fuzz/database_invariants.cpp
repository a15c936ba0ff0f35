#include <algorithm>
#include <string>
#include <utility>

#include "fuzz/invariants.h"
#include "fuzz/require.h"

namespace velkor::testing {

namespace {

using Link = std::pair<uint32_t, uint32_t>;  // caller, callee
using List = StkFunctionList StkFunction::*;

void CheckRecord(const StkFunction& function) {
  const bool defined = function.Is(FN_DEFINED);
  const std::string_view name = function.name;
  Require((function.file != nullptr) == defined, "a function has a file when it is defined", name);
  Require(defined || function.frameSize == 0, "an unknown function has no frame", name);
  Require(defined || function.callees.empty(), "an unknown function calls nothing", name);
  Require(defined || !function.Is(FN_GLOBAL | FN_INDIRECT_CALL | FN_FIXED_EXTRA),
          "only modules set a defined function's flags", name);
  Require(function.frameSize <= kSizeLimit || function.frameSize == kOverSize,
          "a frame size is in the limit or over it", name);
  Require(!function.Is(FN_FIXED_EXTRA) || function.librarySize == kFixedExtraSize,
          "a fixed extra size is fixed", name);
  Require(!function.Is(FN_LIBRARY) || (!defined && function.librarySize <= kSizeLimit),
          "a library size belongs to a function that is only called", name);
  Require(function.Is(FN_LIBRARY | FN_FIXED_EXTRA) || function.librarySize == 0,
          "a library size has its flag", name);
}

void CheckOrder(const StkFunctionList& list, const CodePage& codePage, std::string_view name) {
  const auto descends = [&codePage](const StkFunction* left, const StkFunction* right) {
    return codePage.Compare(left->name, right->name) > 0;
  };
  Require(std::adjacent_find(list.begin(), list.end(), descends) == list.end(),
          "callees are sorted by name", name);
}

// Every call that the lists state, sorted; a list that states one twice is a mistake.
std::vector<Link> Links(const StkFunctionTable& table, List list, bool listHoldsCallers) {
  std::vector<Link> links;
  for (const auto& function : table.Functions()) {
    for (const StkFunction* other : (*function).*list) {
      links.push_back(listHoldsCallers ? Link(other->index, function->index)
                                       : Link(function->index, other->index));
    }
  }
  std::sort(links.begin(), links.end());
  Require(std::adjacent_find(links.begin(), links.end()) == links.end(),
          "no list holds a function twice");
  return links;
}

void CheckCounts(const StkFunctionTable& table) {
  uint32_t unknown = 0;
  uint32_t adjusted = 0;
  uint32_t inForce = 0;
  uint32_t unknownNotInForce = 0;
  for (const auto& function : table.Functions()) {
    const bool isUnknown = !function->Is(FN_DEFINED) && !function->Is(FN_LIBRARY);
    const bool isInForce = function->adjustment != nullptr;
    unknown += isUnknown ? 1U : 0U;
    adjusted += isInForce || function->pendingAdjustment != nullptr ? 1U : 0U;
    inForce += isInForce ? 1U : 0U;
    unknownNotInForce += isUnknown && !isInForce ? 1U : 0U;
  }
  RequireEqual(table.UnknownCount(), unknown, "the unknown count is a recount");
  RequireEqual(table.AdjustedCount(), adjusted, "the adjusted count is a recount");
  RequireEqual(table.CountForSpecFile(false), inForce, "a saved file holds what is in force");
  RequireEqual(table.CountForSpecFile(true), inForce + unknownNotInForce,
               "a file saved on request holds the unknown functions too");
}

}  // namespace

void CheckDatabase(const StkFunctionTable& table) {
  for (size_t i = 0; i < table.Functions().size(); ++i) {
    const StkFunction& function = *table.Functions()[i];
    RequireEqual(function.index, i, "an index is a position", function.name);
    CheckRecord(function);
    Require(table.CallNames(function).empty(), "no call name is left unresolved", function.name);
    CheckOrder(function.callees, table.GetCodePage(), function.name);
    CheckOrder(function.extraCallees, table.GetCodePage(), function.name);
  }
  CheckCounts(table);
  Require(Links(table, &StkFunction::callees, false) == Links(table, &StkFunction::callers, true),
          "callers mirror callees");
}

void CheckExtraLinks(const StkFunctionTable& table) {
  Require(Links(table, &StkFunction::extraCallees, false) ==
              Links(table, &StkFunction::extraCallers, true),
          "extra callers mirror extra callees");
}

}  // namespace velkor::testing
