#include "core/graph_history.h"

#include <algorithm>

#include "core/adjustments.h"
#include "core/function_sorting.h"
#include "core/recompute.h"
#include "core/test_source.h"
#include "fuzz/require.h"

namespace velkor::testing {

namespace {

constexpr uint32_t kSizes[] = {0, 1, 10, 21845, 32768, 65535, kOverSize};
constexpr uint32_t kMargins[] = {kNoMargin, 0, 1, 65535, 0xFFFFFFFE};
constexpr uint32_t kDepths[] = {kNoDepth, 1, 2, 3, 65536, 0xFFFFFFFF};

Statement StatementOf(const StkAdjustment& adjustment) {
  Statement statement{adjustment.margin, adjustment.depth, {}};
  for (const StkFunction* callee : adjustment.callees.value_or(StkFunctionList())) {
    statement.callees.push_back(callee->index);
  }
  std::sort(statement.callees.begin(), statement.callees.end());
  return statement;
}

std::vector<uint32_t> CalleesOf(const std::optional<Statement>& statement) {
  return statement ? statement->callees : std::vector<uint32_t>();
}

}  // namespace

GraphHistory::GraphHistory(FuzzInput& input, const CodePage& codePage, uint32_t maxFunctions,
                           StkReporter& reporter)
    : table(codePage),
      input_(input),
      isLarge_(maxFunctions > kSmall),
      reporter_(reporter),
      files_(codePage) {
  MakeFunctions(maxFunctions);
  stated_.resize(table.Count());
}

bool GraphHistory::Step(Kind kind) {
  const bool rebuilt = Take(kind);
  Statements inForce = stated_;
  for (std::optional<Statement>& statement : inForce) {
    if (statement && statement->StatesNothing()) {
      statement.reset();
    }
  }
  Require(InForce(table) == inForce, "what is stated is in force");
  return rebuilt;
}

bool GraphHistory::Take(Kind kind) {
  switch (kind) {
    case kAdjust:
      return Adjust();
    case kCancel:
      return Cancel();
    case kCancelAll:
      return CancelAll();
    case kReadAdjustments:
      return ReadAdjustments();
    case kCompute:
      return Compute(nullptr);
    case kDiscard:
      return Discard();
    case kReadLibrarySize:
      return ReadLibrarySize();
    default:
      return false;
  }
}

StkFunctionList GraphHistory::AnyFunctions() {
  StkFunctionList list;
  if (isLarge_) {
    for (uint32_t wanted = input_.Below(4); wanted > 0; --wanted) {
      StkFunction& function = AnyFunction();
      RemoveFunction(list, function);
      list.push_back(&function);
    }
    return list;
  }
  const uint32_t chosen = input_.Byte();
  for (StkFunction* function : table.Functions()) {
    if ((chosen >> function->index & 1) != 0) {
      list.push_back(function);
    }
  }
  return list;
}

StkAdjustment GraphHistory::AnyAdjustment(const StkFunction& function) {
  StkAdjustment adjustment;
  adjustment.margin = AnyOf(kMargins);
  adjustment.depth = AnyOf(kDepths);
  if (isLarge_ && input_.Below(3) != 0) {  // the same callees, perhaps arranged otherwise
    adjustment.callees = function.extraCallees;
    std::reverse(adjustment.callees->begin(), adjustment.callees->end());
    return adjustment;
  }
  StkFunctionList callees = AnyFunctions();
  std::erase_if(callees,
                [&](const StkFunction* callee) { return function.CallsDirectly(*callee); });
  if (!callees.empty()) {
    adjustment.SetCallees(callees, table.GetCodePage());
  }
  return adjustment;
}

// Names run against the table's order; what no function has stays unknown.
std::string GraphHistory::Name(uint32_t number) const {
  return isLarge_ ? "_f" + std::to_string(number) : std::string("_") + char('a' + count_ - number);
}

void GraphHistory::MakeFunctions(uint32_t maxFunctions) {
  count_ = 1 + input_.Below(maxFunctions);
  for (uint32_t i = 0; i < count_; ++i) {
    StkFunction& function =
        table.AddDefined(input_.Below(2) != 0 ? Name(i) + "x" : Name(i), files_.Intern("f.c"));
    function.flags |= input_.Below(2) != 0 ? uint32_t{FN_GLOBAL} : 0u;
    function.frameSize = isLarge_ ? input_.Below(9) : AnyOf(kSizes);
    if (input_.Below(4) == 1) {
      function.SetFixedExtra();
    }
    if (isLarge_ && input_.Below(8) == 0) {
      function.flags |= input_.Below(2) != 0 ? FN_DYNAMIC_FRAME : FN_HIDDEN_CALL;
    }
    AddCalls(function);
  }
  table.ResolveAllCalls();
}

void GraphHistory::AddCalls(StkFunction& function) {
  if (isLarge_) {
    for (uint32_t calls = input_.Below(4); calls > 0; --calls) {
      table.AddCallName(function, Name(input_.Below(count_)));
    }
    return;
  }
  const uint32_t callees = input_.Byte();
  for (uint32_t callee = 0; callee <= count_; ++callee) {
    if ((callees >> callee & 1) != 0) {
      table.AddCallName(function, Name(callee));
    }
  }
}

bool GraphHistory::Compute(SpecificationSource* source) {
  const bool rebuild = input_.Below(2) != 0 || roots.Functions().empty();
  Recompute(table, roots, rebuild, source, nullptr, reporter_);
  return rebuild;
}

bool GraphHistory::Adjust() {
  StkFunction& function = AnyFunction();
  const StkAdjustment adjustment = AnyAdjustment(function);
  std::optional<Statement>& stated = stated_[function.index];
  const Statement statement = StatementOf(adjustment);
  const bool changed = CalleesOf(stated) != statement.callees;
  stated = statement;
  Require(AdjustFunction(table, roots, function, adjustment, reporter_) == changed,
          "a change of callees is told");
  return changed;
}

bool GraphHistory::Cancel() {
  StkFunction& function = AnyFunction();
  const bool changed = !CalleesOf(stated_[function.index]).empty();
  stated_[function.index].reset();
  Require(CancelAdjustment(table, roots, function, reporter_) == changed,
          "a change of callees is told");
  return changed;
}

bool GraphHistory::CancelAll() {
  const bool changed = std::any_of(stated_.begin(), stated_.end(), [](const auto& statement) {
    return !CalleesOf(statement).empty();
  });
  stated_.assign(stated_.size(), std::nullopt);
  Require(CancelAllAdjustments(table, roots, reporter_) == changed, "a change of callees is told");
  return changed;
}

// Callees count only where the graph is built anew, depths only of what is recursive then.
bool GraphHistory::ReadAdjustments() {
  TestSource source(static_cast<SpecificationKind>(input_.Below(3)));
  Statements read(table.Count());
  for (uint32_t count = isLarge_ ? table.Count() / 4 : input_.Below(4); count > 0; --count) {
    StkFunction& function = AnyFunction();
    if (function.pendingAdjustment == nullptr) {
      StkAdjustment adjustment = AnyAdjustment(function);
      read[function.index] = StatementOf(adjustment);
      table.SetPendingAdjustment(function, std::move(adjustment));
    }
  }
  const bool rebuilt = Compute(&source);
  for (const StkFunction* function : table.Functions()) {
    if (std::optional<Statement>& statement = read[function->index]) {
      std::optional<Statement>& stated = stated_[function->index];
      statement->depth = function->Is(FN_RECURSIVE) ? statement->depth : kNoDepth;
      statement->callees = rebuilt ? statement->callees : CalleesOf(stated);
      stated = statement;
    }
  }
  return rebuilt;
}

// Of a file that is given up.
bool GraphHistory::Discard() {
  StkFunction& function = AnyFunction();
  table.SetPendingAdjustment(function, AnyAdjustment(function));
  table.DiscardPendingAdjustments();
  return false;
}

bool GraphHistory::ReadLibrarySize() {
  StkFunction& function = AnyFunction();
  if (function.IsUnknown()) {
    table.SetLibrarySize(function, input_.Byte());
  }
  Recompute(table, roots, false, nullptr, nullptr, reporter_);
  return false;
}

}  // namespace velkor::testing
