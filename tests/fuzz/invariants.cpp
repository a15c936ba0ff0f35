#include "fuzz/invariants.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "core/adjustments.h"
#include "core/function_text.h"
#include "fuzz/require.h"
#include "messages/catalogue.h"
#include "platform/limits.h"

namespace velkor::testing {

namespace {

using Link = std::pair<uint32_t, uint32_t>;  // caller, callee

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

void CheckOrder(StkFunctionSpan list, const CodePage& codePage, std::string_view name) {
  const auto descends = [&codePage](const StkFunction* left, const StkFunction* right) {
    return codePage.Compare(left->name, right->name) > 0;
  };
  Require(std::adjacent_find(list.begin(), list.end(), descends) == list.end(),
          "callees are sorted by name", name);
}

// Sorted; a call that is there twice is a mistake.
std::vector<Link> Sorted(std::vector<Link> links) {
  std::sort(links.begin(), links.end());
  Require(std::adjacent_find(links.begin(), links.end()) == links.end(),
          "no list holds a function twice");
  return links;
}

// The calls of all functions, as the callers have them and as the callees do.
template <typename CalleesOf, typename CallersOf>
void CheckMirrored(const StkFunctionTable& table, CalleesOf calleesOf, CallersOf callersOf,
                   std::string_view rule) {
  std::vector<Link> fromCallers;
  std::vector<Link> fromCallees;
  for (const StkFunction* function : table.Functions()) {
    for (const StkFunction* callee : calleesOf(*function)) {
      fromCallers.emplace_back(function->index, callee->index);
    }
    for (const uint32_t caller : callersOf(function->index)) {
      fromCallees.emplace_back(caller, function->index);
    }
  }
  Require(Sorted(std::move(fromCallers)) == Sorted(std::move(fromCallees)), rule);
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
    inForce += function->HasStatement() ? 1U : 0U;
    unknownNotInForce += isUnknown && !isInForce ? 1U : 0U;
  }
  RequireEqual(table.UnknownCount(), unknown, "the unknown count is a recount");
  RequireEqual(table.AdjustedCount(), adjusted, "the adjusted count is a recount");
  RequireEqual(table.CountForSpecFile(false), inForce, "a saved file holds what is in force");
  RequireEqual(table.CountForSpecFile(true), inForce + unknownNotInForce,
               "a file saved on request holds the unknown functions too");
}

// Which functions can reach which in one call or more, by one search a function.
class Reachability {
 public:
  static constexpr size_t kMaxFunctions = 300;

  // Of a table of at most kMaxFunctions.
  explicit Reachability(const StkFunctionTable& table) {
    for (const auto& function : table.Functions()) {
      reached_.push_back(ReachedFrom(*function, table.Count()));
    }
  }
  bool Reaches(const StkFunction& from, const StkFunction& to) const {
    return reached_[from.index][to.index];
  }

 private:
  static std::vector<bool> ReachedFrom(const StkFunction& start, size_t count) {
    std::vector<bool> reached(count);
    std::vector<const StkFunction*> open = {&start};
    while (!open.empty()) {
      const StkFunction& function = *open.back();
      open.pop_back();
      for (StkFunction* callee : AllCallees(function)) {
        if (!reached[callee->index]) {
          reached[callee->index] = true;
          open.push_back(callee);
        }
      }
    }
    return reached;
  }

  std::vector<std::vector<bool>> reached_;
};

uint32_t LargestTotal(const StkFunctionList& functions) {
  uint32_t largest = 0;
  for (const StkFunction* function : functions) {
    largest = std::max(largest, function->totalStackSize);
  }
  return largest;
}

uint32_t OrOverSize(uint64_t size) {
  return size > kSizeLimit ? kOverSize : static_cast<uint32_t>(size);
}

// What the function's own figures and its largest callee make together.
uint32_t StatedTotal(const StkFunction& function) {
  const uint64_t own = uint64_t{function.frameSize} + function.maxCalleeSize;
  if (function.adjustment == nullptr) {
    const bool added = function.Is(FN_LIBRARY | FN_FIXED_EXTRA);
    return OrOverSize(own + (added ? function.librarySize : 0));
  }
  const StkAppliedAdjustment& adjustment = *function.adjustment;
  const uint64_t round = own + (adjustment.margin == kNoMargin ? 0 : adjustment.margin);
  const bool repeated = function.Is(FN_RECURSIVE) && adjustment.depth != kNoDepth;
  return round > kSizeLimit ? kOverSize : OrOverSize(round * (repeated ? adjustment.depth : 1));
}

void CheckTotal(const StkFunction& function) {
  Require(function.pendingAdjustment == nullptr, "nothing pending is left", function.name);
  RequireEqual(function.totalStackSize, StatedTotal(function), "a total is its sum", function.name);
  RequireEqual(TotalSizeText(function) == "SIZEOVER", function.totalStackSize == kOverSize,
               "a size over the limit shows as one", function.name);
}

// A call back into the recursion that is being computed adds nothing, so a recursive function may
// leave out those callees that lie in its own cycle, and no others.
void CheckLargestCallee(const StkFunction& function, const Reachability& graph) {
  const StkFunctionList callees = AllCallees(function);
  StkFunctionList outside;
  std::copy_if(callees.begin(), callees.end(), std::back_inserter(outside),
               [&](const StkFunction* callee) { return !graph.Reaches(*callee, function); });
  Require(function.maxCalleeSize >= LargestTotal(outside), "no callee is understated",
          function.name);
  Require(function.maxCalleeSize <= LargestTotal(callees), "no callee is overstated",
          function.name);
  Require(function.maxCalleeSize == 0 || std::any_of(callees.begin(), callees.end(),
                                                     [&function](const StkFunction* callee) {
                                                       return callee->totalStackSize ==
                                                              function.maxCalleeSize;
                                                     }),
          "the largest callee is one", function.name);
}

bool IsCalled(const StkFunctionTable& table, const StkFunction& function) {
  return !table.Callers(function.index).empty() || !table.ExtraCallers(function.index).empty();
}

void CheckRoots(const StkFunctionTable& table, const StkRootList& roots) {
  StkFunctionList marked;
  bool over = false;
  for (const auto& function : table.Functions()) {
    if (function->Is(FN_ROOT)) {
      marked.push_back(function);
      over |= function->totalStackSize == kOverSize;
    }
    const bool called = IsCalled(table, *function);
    Require(called || function->Is(FN_ROOT), "what nothing calls is top-level", function->name);
    Require(!called || !function->Is(FN_ROOT) || function->Is(FN_RECURSIVE),
            "what is called is top-level only in a recursion", function->name);
  }
  Require(marked == roots.Functions(), "the root list holds the top-level functions in order");
  RequireEqual(table.Overflow(), over, "the overflow flag is that of a root");
}

void CheckClosure(const StkFunctionTable& table, const StkRootList& roots) {
  const Reachability graph(table);
  for (const auto& function : table.Functions()) {
    RequireEqual(function->Is(FN_RECURSIVE), graph.Reaches(*function, *function),
                 "recursive is what can reach itself", function->name);
    Require(function->Is(FN_ROOT) || std::any_of(roots.Functions().begin(), roots.Functions().end(),
                                                 [&](const StkFunction* root) {
                                                   return graph.Reaches(*root, *function);
                                                 }),
            "every function is below a top-level function", function->name);
    CheckLargestCallee(*function, graph);
  }
}

}  // namespace

StkFunctionList AllCallees(const StkFunction& function) {
  StkFunctionList all(function.callees.begin(), function.callees.end());
  all.insert(all.end(), function.extraCallees.begin(), function.extraCallees.end());
  return all;
}

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
  CheckMirrored(
      table, [](const StkFunction& function) { return function.callees; },
      [&table](uint32_t function) { return table.Callers(function); }, "callers mirror callees");
}

void CheckResults(const StkFunctionTable& table, const StkRootList& roots) {
  CheckMirrored(
      table, [](const StkFunction& function) { return StkFunctionSpan(function.extraCallees); },
      [&table](uint32_t function) { return table.ExtraCallers(function); },
      "extra callers mirror extra callees");
  CheckRoots(table, roots);
  for (const auto& function : table.Functions()) {
    CheckTotal(*function);
  }
  if (table.Count() <= Reachability::kMaxFunctions) {
    CheckClosure(table, roots);
  }
}

bool IsWhole(std::string_view text, const CodePage& codePage) {
  return codePage.ToUtf8(text).find("\xEF\xBF\xBD") == std::string::npos;  // U+FFFD
}

void CheckMessages(const std::vector<std::string>& texts, const CodePage& codePage,
                   bool wholeInputs) {
  const CodePage utf8 = CodePage::Utf8();
  for (const std::string& text : texts) {
    Require(text.size() <= kMaxTextLength, "a message has a limit");
    const std::string shown = codePage.ToUtf8(text);
    RequireEqual(utf8.ToUtf8(shown), shown, "what a screen gets is UTF-8");
    Require(!wholeInputs || IsWhole(text, codePage), "a message holds whole characters", shown);
  }
}

}  // namespace velkor::testing
