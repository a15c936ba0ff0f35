#include "core/detail/report_overflow.h"

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "core/function_text.h"

namespace velkor {

namespace {

void ReportIfOver(const StkFunction& function, std::string_view name, MessageKey key,
                  uint32_t sizeLimit, StkReporter& reporter) {
  if (function.totalStackSize == kOverSize) {
    reporter.ShowWarning(key, {name, std::to_string(sizeLimit), name});
  }
}

// The functions that call one function, not yet looked at.
class CallerCursor {
 public:
  CallerCursor(const StkFunctionTable& table, const StkFunction& function)
      : table_(table),
        callers_(table.Callers(function.index)),
        extra_(table.ExtraCallers(function.index)) {}

  const StkFunction* Next() {
    std::span<const uint32_t>& callers = callers_.empty() ? extra_ : callers_;
    if (callers.empty()) {
      return nullptr;
    }
    const StkFunction* caller = table_.get().Functions()[callers.front()];
    callers = callers.subspan(1);
    return caller;
  }

 private:
  std::reference_wrapper<const StkFunctionTable> table_;
  std::span<const uint32_t> callers_;
  std::span<const uint32_t> extra_;
};

// The top-level functions above a function, each once, in the order in which a walk upward along
// simple paths first meets them. Each function is entered once. Entering one again by another path
// would meet nothing new: when it was left, all its callers had been entered, and those that are
// not on the path left as well, so whatever can be reached from it without crossing the path has
// been met; and the path's own callers are still to come, in the same order.
StkFunctionList TopLevelCallers(const StkFunctionTable& table, const StkFunction& start) {
  StkFunctionList topLevel;
  std::vector<bool> met(table.Count(), false);
  met[start.index] = true;
  std::vector<CallerCursor> path{{table, start}};
  while (!path.empty()) {
    const StkFunction* caller = path.back().Next();
    if (caller == nullptr) {
      path.pop_back();
    } else if (!met[caller->index]) {
      met[caller->index] = true;
      if (caller->Is(FN_ROOT)) {
        topLevel.push_back(table.Functions()[caller->index]);
      } else {
        path.emplace_back(table, *caller);
      }
    }
  }
  return topLevel;
}

}  // namespace

void ReportOverflow(const StkFunctionTable& table, const StkFunction& function,
                    std::string_view name, StkReporter& reporter) {
  const bool deep = function.adjustment != nullptr && function.adjustment->depth >= 2;
  ReportIfOver(function, name, deep ? MessageKey::kW9465 : MessageKey::kW9466, table.SizeLimit(),
               reporter);
  if (function.Is(FN_ROOT)) {
    return;
  }
  for (const StkFunction* root : TopLevelCallers(table, function)) {
    ReportIfOver(*root, FunctionSpecName(*root, table.GetCodePage()), MessageKey::kW9466,
                 table.SizeLimit(), reporter);
  }
}

}  // namespace velkor
