#include "core/literal_model.h"

#include <algorithm>

#include "core/function_text.h"

namespace velkor::testing {

IndexList Indices(const StkFunctionList& list) {
  IndexList indices;
  for (const StkFunction* function : list) {
    indices.push_back(function->index);
  }
  return indices;
}

namespace {

bool Has(const IndexList& list, size_t index) {
  return std::find(list.begin(), list.end(), index) != list.end();
}

}  // namespace

ModelAdjustment::ModelAdjustment(const StkAdjustment& adjustment)
    : margin(adjustment.margin), depth(adjustment.depth), line(adjustment.line) {
  if (adjustment.callees) {
    callees = Indices(*adjustment.callees);
  }
}

LiteralModel::LiteralModel(const StkFunctionTable& table) {
  for (const auto& from : table.Functions()) {
    ModelFunction function;
    function.name = FunctionSpecName(*from, table.GetCodePage());
    function.frameSize = from->frameSize;
    function.flags = from->flags;
    function.librarySize = from->librarySize;
    function.callees = Indices(from->callees);
    function.extraCallees = Indices(from->extraCallees);
    function.callers = Indices(from->callers);
    function.extraCallers = Indices(from->extraCallers);
    if (from->adjustment != nullptr) {
      function.applied = *from->adjustment;
    }
    functions.push_back(function);
  }
}

void LiteralModel::ClearDone() {
  for (ModelFunction& function : functions) {
    function.done = false;
  }
}

void LiteralModel::Link() {
  for (ModelFunction& function : functions) {
    function.extraCallers.clear();
  }
  for (ModelFunction& function : functions) {
    if (function.pending) {
      function.extraCallees = function.pending->callees.value_or(IndexList());
    }
  }
  for (size_t f = 0; f < functions.size(); ++f) {
    for (const size_t callee : functions[f].extraCallees) {
      functions[callee].extraCallers.push_back(f);
    }
  }
}

void LiteralModel::AppendInPostOrder(size_t f, IndexList& order) {
  functions[f].done = true;
  for (const IndexList* list : {&functions[f].callees, &functions[f].extraCallees}) {
    for (const size_t callee : *list) {
      if (!functions[callee].done) {
        AppendInPostOrder(callee, order);
      }
    }
  }
  order.push_back(f);
}

IndexList LiteralModel::PostOrder() {
  IndexList order;
  ClearDone();
  for (const bool all : {false, true}) {
    for (size_t f = 0; f < functions.size(); ++f) {
      const bool isCalled = !functions[f].callers.empty() || !functions[f].extraCallers.empty();
      if (!functions[f].done && (all || !isCalled)) {
        AppendInPostOrder(f, order);
      }
    }
  }
  ClearDone();
  return order;
}

bool LiteralModel::Reaches(size_t target, const IndexList& list, IndexList& path) const {
  for (const size_t callee : list) {
    if (callee == target) {
      return true;
    }
    if (functions[callee].done || Has(path, callee)) {
      continue;
    }
    path.push_back(callee);
    if (Reaches(target, functions[callee].callees, path) ||
        Reaches(target, functions[callee].extraCallees, path)) {
      return true;
    }
    path.pop_back();
  }
  return false;
}

bool LiteralModel::AboveIsRecursive(size_t f, size_t current, IndexList& path) const {
  for (const IndexList* list : {&functions[current].callers, &functions[current].extraCallers}) {
    for (const size_t caller : *list) {
      if (caller == f || Has(path, caller)) {
        continue;
      }
      if (!functions[caller].Is(FN_RECURSIVE) || functions[caller].Is(FN_ROOT)) {
        return false;
      }
      path.push_back(caller);
      if (!AboveIsRecursive(f, caller, path)) {
        return false;
      }
      path.pop_back();
    }
  }
  return true;
}

void LiteralModel::DecideRoots() {
  for (size_t f = 0; f < functions.size(); ++f) {
    ModelFunction& function = functions[f];
    IndexList path;
    const bool isRoot = (function.callers.empty() && function.extraCallers.empty()) ||
                        (function.Is(FN_RECURSIVE) && AboveIsRecursive(f, f, path));
    function.flags = (function.flags & ~uint32_t{FN_ROOT}) | (isRoot ? uint32_t{FN_ROOT} : 0u);
    if (isRoot) {
      roots.push_back(f);
    }
  }
}

void LiteralModel::Recompute(bool rebuild, std::optional<SpecificationKind> source) {
  if (rebuild) {
    roots.clear();
  }
  if (roots.empty()) {
    Link();
    for (const size_t f : PostOrder()) {
      IndexList path;
      functions[f].flags &= ~uint32_t{FN_RECURSIVE};
      if (Reaches(f, functions[f].callees, path) || Reaches(f, functions[f].extraCallees, path)) {
        functions[f].flags |= FN_RECURSIVE;
      } else {
        functions[f].done = true;
      }
    }
    DecideRoots();
  }
  if (source) {
    CheckRecursionDepths(*source);
  }
  ClearDone();
  overflow = false;
  for (const size_t root : roots) {
    IndexList path;
    overflow |= Compute(root, root, path, source == SpecificationKind::kUserFile) == kOverSize;
  }
}

void LiteralModel::CheckRecursionDepths(SpecificationKind kind) {
  for (ModelFunction& function : functions) {
    if (function.pending && function.pending->depth != 0 && !function.Is(FN_RECURSIVE)) {
      if (kind == SpecificationKind::kUserFile) {
        log.push_back(
            "W9417 Illegal \"RECTIME=\" for non-recursive function in file (user.txt:line " +
            std::to_string(function.pending->line) +
            ").\nIt shall be specified for recursive functions.");
      }
      function.pending->depth = 0;
    }
  }
}

uint32_t LiteralModel::Compute(size_t f, size_t root, IndexList& path, bool logPending) {
  ModelFunction& function = functions[f];
  if (function.done) {
    return function.total;
  }
  function.chainCount = 1;
  function.maxCalleeSize = WalkCallees(f, function.callees, root, path, logPending);
  function.maxCalleeSize = std::max(function.maxCalleeSize,
                                    WalkCallees(f, function.extraCallees, root, path, logPending));
  if (function.chainCount > 1) {
    --function.chainCount;
  }
  function.total = Total(function);
  ApplyPending(function, logPending);
  function.done = true;
  return function.total;
}

uint32_t LiteralModel::WalkCallees(size_t f, const IndexList& list, size_t root, IndexList& path,
                                   bool logPending) {
  uint32_t largest = 0;
  for (const size_t callee : list) {
    if (callee == root) {
      continue;
    }
    if (Has(path, callee)) {
      ++functions[f].chainCount;
      continue;
    }
    path.push_back(callee);
    largest = std::max(largest, Compute(callee, root, path, logPending));
    path.pop_back();
    functions[f].chainCount += functions[callee].chainCount;
  }
  return largest;
}

uint32_t LiteralModel::Total(const ModelFunction& f) const {
  if (f.frameSize > 65535 || f.maxCalleeSize > 65535) {
    return kOverSize;
  }
  uint64_t total = uint64_t{f.frameSize} + f.maxCalleeSize;
  bool over = total > 65535;
  if (f.pending || f.applied) {
    const uint32_t margin = f.pending ? f.pending->margin : f.applied->margin;
    const uint32_t depth = f.pending ? f.pending->depth : f.applied->depth;
    total += margin != kNoMargin ? margin : 0;
    over = over || total > 65535;
    if (total != 0 && f.Is(FN_RECURSIVE) && depth != 0) {
      over = over || 65535 / total < depth;
      total *= depth;
    }
  } else if (f.Is(FN_LIBRARY | FN_FIXED_EXTRA)) {
    total += f.librarySize;
    over = over || total > 65535;
  }
  return over ? kOverSize : static_cast<uint32_t>(total);
}

void LiteralModel::ApplyPending(ModelFunction& function, bool logPending) {
  if (!function.pending) {
    return;
  }
  bool changed = false;
  const std::string text = Information(*function.pending, function, false, changed);
  if (logPending && !text.empty()) {
    log.push_back("Stack size specification of " + function.name + " adjusted. " + text + ".");
  }
  function.applied = StkAppliedAdjustment{function.pending->margin, function.pending->depth};
  function.pending.reset();
}

std::string LiteralModel::Information(const ModelAdjustment& a, const ModelFunction& f,
                                      bool compare, bool& changed) const {
  std::vector<std::string> parts;
  const auto value = [&](uint32_t now, uint32_t before, uint32_t none, const std::string& what) {
    if (compare && f.applied && now == before) {
      return;
    }
    if (now != none) {
      parts.push_back(what + " is set to " + std::to_string(now));
    } else if (compare && f.applied) {
      parts.push_back(what + " is deleted");
    }
  };
  value(a.margin, f.applied ? f.applied->margin : 0, kNoMargin, "Additional margin");
  value(a.depth, f.applied ? f.applied->depth : 0, 0, "Recursion depth");
  const IndexList after = a.callees.value_or(IndexList());
  for (const size_t callee : after) {
    if (!compare || !Has(f.extraCallees, callee)) {
      parts.push_back(functions[callee].name + " is added.");
      changed = true;
    }
  }
  for (const size_t callee : f.extraCallees) {
    if (compare && !Has(after, callee)) {
      parts.push_back(functions[callee].name + " is deleted.");
      changed = true;
    }
  }
  std::string text;
  for (const std::string& part : parts) {
    text += (text.empty() ? "" : ", ") + part;
  }
  return text;
}

bool LiteralModel::AdjustFunction(size_t index, const ModelAdjustment& adjustment) {
  ModelFunction& function = functions[index];
  bool changed = false;
  const std::string text = Information(adjustment, function, true, changed);
  function.applied = StkAppliedAdjustment{adjustment.margin, adjustment.depth};
  function.extraCallees = adjustment.callees.value_or(IndexList());
  if (!text.empty()) {
    log.push_back("Stack size specification of " + function.name + " adjusted. " + text + ".");
  }
  Recompute(changed, std::nullopt);
  if (overflow) {
    ReportOverflow(index);
  }
  return changed;
}

// Whether the function had extra callees.
bool LiteralModel::Cancel(ModelFunction& function) {
  const bool changed = !function.extraCallees.empty();
  function.applied.reset();
  function.extraCallees.clear();
  log.push_back("Stack size specification of " + function.name + " canceled.");
  return changed;
}

bool LiteralModel::CancelAdjustment(size_t index) {
  if (!functions[index].applied) {
    return false;
  }
  const bool changed = Cancel(functions[index]);
  Recompute(changed, std::nullopt);
  return changed;
}

bool LiteralModel::CancelAllAdjustments() {
  bool any = false;
  bool changed = false;
  for (ModelFunction& function : functions) {
    if (function.applied) {
      any = true;
      changed |= Cancel(function);
    }
  }
  if (any) {
    Recompute(changed, std::nullopt);
  }
  return changed;
}

void LiteralModel::Warn(const ModelFunction& function, bool depth) {
  if (function.total == kOverSize) {
    log.push_back((depth ? "W9465" : "W9466") +
                  (" Total stack size exceeds 65535 in function (" + function.name) +
                  ").\nReduce " +
                  (depth ? "recursion depth." : "stack size in the maximum call chain."));
  }
}

void LiteralModel::ReportOverflow(size_t index) {
  const ModelFunction& function = functions[index];
  Warn(function, function.applied && function.applied->depth >= 2);
  if (!function.Is(FN_ROOT)) {
    ClearDone();
    IndexList path;
    WalkUp(index, index, path);
  }
}

void LiteralModel::WalkUp(size_t f, size_t current, IndexList& path) {
  for (const IndexList* list : {&functions[current].callers, &functions[current].extraCallers}) {
    for (const size_t caller : *list) {
      if (caller == f) {
        continue;
      }
      if (functions[caller].Is(FN_ROOT)) {
        if (!functions[caller].done) {
          functions[caller].done = true;
          Warn(functions[caller], false);
        }
      } else if (!Has(path, caller)) {
        path.push_back(caller);
        WalkUp(f, caller, path);
        path.pop_back();
      }
    }
  }
}

bool LiteralModel::IsRecursiveWith(size_t f, const IndexList& proposed) {
  for (const size_t g : PostOrder()) {
    IndexList path;
    if (g == f) {
      return Reaches(f, functions[f].callees, path) || Reaches(f, proposed, path);
    }
    functions[g].done =
        !Reaches(g, functions[g].callees, path) && !Reaches(g, functions[g].extraCallees, path);
  }
  return false;
}

}  // namespace velkor::testing
