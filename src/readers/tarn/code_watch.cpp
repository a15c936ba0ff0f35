#include "readers/tarn/code_watch.h"

#include <algorithm>

namespace velkor {

void CodeWatch::AddFunctionSymbol(uint32_t name) {
  if (name >= symbols_.size()) {
    symbols_.resize(name + size_t{1});
  }
  symbols_[name].isFunction = true;
  hasFunctionSymbols_ = true;
}

void CodeWatch::TakeLabel(std::string_view label, uint32_t line) {
  if (!label.starts_with('_')) {
    function_ = kNone;
    return;
  }
  const std::optional<uint32_t> name = recording_.names.Find(label);
  if (!name || !IsFunctionSymbol(*name)) {
    return;
  }
  function_ = *name;
  if (!symbols_[*name].hasLabel) {
    symbols_[*name].hasLabel = true;
    labels_.push_back({*name, line});
  }
}

void CodeWatch::TakeCall(std::string_view name, uint32_t line) {
  if (function_ == kNone) {
    return;
  }
  const std::optional<uint32_t> callee = recording_.names.Find(name);
  if (!callee || *callee == function_ || !IsFunctionSymbol(*callee) ||
      symbols_[*callee].lastCaller == function_) {
    return;
  }
  symbols_[*callee].lastCaller = function_;
  calls_.push_back({function_, *callee, line});
}

void CodeWatch::FindHiddenCalls() {
  std::ranges::stable_sort(calls_, {}, &Call::caller);
  listedBy_.assign(recording_.names.size(), 0);
  for (size_t i = 0; i < recording_.events.size(); ++i) {
    if (recording_.events[i].step == ModuleRecording::Step::kFunction) {
      FindHiddenCallsOf(recording_.events[i].value, i + 1);
    }
  }
}

void CodeWatch::FindHiddenCallsOf(uint32_t function, size_t firstEvent) {
  using Step = ModuleRecording::Step;
  for (size_t i = firstEvent;
       i < recording_.events.size() && recording_.events[i].step != Step::kFunction; ++i) {
    if (recording_.events[i].step == Step::kCallee) {
      listedBy_[recording_.events[i].value] = function + 1;
    }
  }
  const uint32_t caller = recording_.functions[function].name;
  auto call = std::ranges::lower_bound(calls_, caller, {}, &Call::caller);
  for (; call != calls_.end() && call->caller == caller; ++call) {
    if (listedBy_[call->callee] != function + 1) {
      listedBy_[call->callee] = function + 1;
      recording_.hiddenCalls.push_back({function, call->callee, call->line});
    }
  }
}

std::optional<CodeWatch::Label> CodeWatch::FindUnrecordedLabel() const {
  std::vector<bool> recorded(recording_.names.size());
  for (const ModuleRecording::Function& function : recording_.functions) {
    recorded[function.name] = true;
  }
  const auto found =
      std::ranges::find_if(labels_, [&](const Label& label) { return !recorded[label.name]; });
  return found == labels_.end() ? std::nullopt : std::optional(*found);
}

}  // namespace velkor
