#include "core/literal_model.h"

#include <algorithm>

namespace velkor::testing {

namespace {

constexpr uint32_t kMarks = FN_RECURSIVE | FN_ROOT;

bool Has(const IndexList& list, size_t index) {
  return std::find(list.begin(), list.end(), index) != list.end();
}

void Append(StkFunctionSpan functions, IndexList& list) {
  for (const StkFunction* function : functions) {
    list.push_back(function->index);
  }
}

template <typename Function>
std::string Line(const Function& function, uint32_t total) {
  return std::to_string(function.flags) + " " + std::to_string(total) + " " +
         std::to_string(function.maxCalleeSize) + " " + std::to_string(function.chainCount) + "\n";
}

}  // namespace

LiteralModel::LiteralModel(const StkFunctionTable& table)
    : table_(table), functions_(table.Count()) {
  for (const StkFunction* from : table.Functions()) {
    functions_[from->index].flags = from->flags;
  }
}

void LiteralModel::Read() {
  for (const StkFunction* from : table_.Functions()) {
    ModelFunction& function = functions_[from->index];
    function.flags = (from->flags & ~kMarks) | (function.flags & kMarks);
    function.callees.clear();
    Append(from->callees, function.callees);
    Append(from->extraCallees, function.callees);
    function.callers.clear();
    const auto callers = table_.Callers(from->index);
    function.callers.assign(callers.begin(), callers.end());
  }
  for (const StkFunction* caller : table_.Functions()) {
    for (const StkFunction* callee : caller->extraCallees) {
      functions_[callee->index].callers.push_back(caller->index);
    }
  }
}

void LiteralModel::ClearDone() {
  for (ModelFunction& function : functions_) {
    function.done = false;
  }
}

void LiteralModel::AppendInPostOrder(size_t f, IndexList& order) {
  functions_[f].done = true;
  for (const size_t callee : functions_[f].callees) {
    if (!functions_[callee].done) {
      AppendInPostOrder(callee, order);
    }
  }
  order.push_back(f);
}

IndexList LiteralModel::PostOrder() {
  IndexList order;
  ClearDone();
  for (const bool all : {false, true}) {
    for (size_t f = 0; f < functions_.size(); ++f) {
      if (!functions_[f].done && (all || functions_[f].callers.empty())) {
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
    if (functions_[callee].done || Has(path, callee)) {
      continue;
    }
    path.push_back(callee);
    if (Reaches(target, functions_[callee].callees, path)) {
      return true;
    }
    path.pop_back();
  }
  return false;
}

bool LiteralModel::AboveIsRecursive(size_t f, size_t current, IndexList& path) const {
  for (const size_t caller : functions_[current].callers) {
    if (caller == f || Has(path, caller)) {
      continue;
    }
    if (!functions_[caller].Is(FN_RECURSIVE) || functions_[caller].Is(FN_ROOT)) {
      return false;
    }
    path.push_back(caller);
    if (!AboveIsRecursive(f, caller, path)) {
      return false;
    }
    path.pop_back();
  }
  return true;
}

void LiteralModel::DecideRoots() {
  for (size_t f = 0; f < functions_.size(); ++f) {
    ModelFunction& function = functions_[f];
    IndexList path;
    const bool isRoot =
        function.callers.empty() || (function.Is(FN_RECURSIVE) && AboveIsRecursive(f, f, path));
    function.flags = (function.flags & ~uint32_t{FN_ROOT}) | (isRoot ? uint32_t{FN_ROOT} : 0u);
    if (isRoot) {
      roots_.push_back(f);
    }
  }
}

void LiteralModel::Recompute(bool rebuild) {
  Read();
  if (rebuild || roots_.empty()) {
    roots_.clear();
    for (const size_t f : PostOrder()) {
      IndexList path;
      functions_[f].flags &= ~uint32_t{FN_RECURSIVE};
      functions_[f].done = !Reaches(f, functions_[f].callees, path);
      functions_[f].flags |= functions_[f].done ? 0u : uint32_t{FN_RECURSIVE};
    }
    DecideRoots();
  }
  ClearDone();
  overflow_ = false;
  for (const size_t root : roots_) {
    IndexList path;
    overflow_ |= Compute(root, root, path) == kOverSize;
  }
}

uint32_t LiteralModel::Compute(size_t f, size_t root, IndexList& path) {
  ModelFunction& function = functions_[f];
  if (!function.done) {
    function.chainCount = 1;
    function.maxCalleeSize = LargestCallee(f, root, path);
    function.chainCount -= function.chainCount > 1 ? 1 : 0;
    function.total = Total(f);
    function.done = true;
  }
  return function.total;
}

uint32_t LiteralModel::LargestCallee(size_t f, size_t root, IndexList& path) {
  uint32_t largest = 0;
  for (const size_t callee : functions_[f].callees) {
    if (callee == root) {
      continue;
    }
    if (Has(path, callee)) {
      ++functions_[f].chainCount;
      continue;
    }
    path.push_back(callee);
    largest = std::max(largest, Compute(callee, root, path));
    path.pop_back();
    functions_[f].chainCount += functions_[callee].chainCount;
  }
  return largest;
}

uint32_t LiteralModel::Total(size_t f) const {
  const StkFunction& record = *table_.Functions()[f];
  if (record.frameSize > 65535 || functions_[f].maxCalleeSize > 65535) {
    return kOverSize;
  }
  uint64_t total = uint64_t{record.frameSize} + functions_[f].maxCalleeSize;
  bool over = total > 65535;
  if (record.adjustment != nullptr) {
    const uint32_t depth = record.adjustment->depth;
    total += record.adjustment->margin != kNoMargin ? record.adjustment->margin : 0;
    over = over || total > 65535;
    if (total != 0 && functions_[f].Is(FN_RECURSIVE) && depth != 0) {
      over = over || 65535 / total < depth;
      total *= depth;
    }
  } else if (record.Is(FN_LIBRARY | FN_FIXED_EXTRA)) {
    total += record.librarySize;
    over = over || total > 65535;
  }
  return over ? kOverSize : static_cast<uint32_t>(total);
}

bool LiteralModel::IsRecursiveWith(size_t f, const StkFunctionList& proposed) {
  for (const size_t g : PostOrder()) {
    IndexList path;
    if (g == f) {
      IndexList callees;
      Append(table_.Functions()[f]->callees, callees);
      Append(proposed, callees);
      return Reaches(f, callees, path);
    }
    functions_[g].done = !Reaches(g, functions_[g].callees, path);
  }
  return false;
}

std::string LiteralModel::Results() const {
  std::string text = overflow_ ? "over\n" : "";
  for (const ModelFunction& function : functions_) {
    text += Line(function, function.total);
  }
  for (const size_t root : roots_) {
    text += std::to_string(root) + "\n";
  }
  return text;
}

std::string Results(const StkFunctionTable& table, const StkRootList& roots) {
  std::string text = table.Overflow() ? "over\n" : "";
  for (const StkFunction* function : table.Functions()) {
    text += Line(*function, function->totalStackSize);
  }
  for (const StkFunction* root : roots.Functions()) {
    text += std::to_string(root->index) + "\n";
  }
  return text;
}

}  // namespace velkor::testing
