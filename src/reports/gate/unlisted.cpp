#include "reports/gate/unlisted.h"

#include <algorithm>

namespace velkor::reports {
namespace {

class Coverage {
 public:
  explicit Coverage(const AnalysisResult& result)
      : result_(result), covered_(result.functions.size(), false) {}

  void Cover(const std::vector<uint32_t>& functions) {
    for (const uint32_t function : functions) {
      Meet(function);
    }
    while (!waiting_.empty()) {
      const uint32_t function = waiting_.back();
      waiting_.pop_back();
      for (const uint32_t callee : result_.AllCallees(function)) {
        Meet(callee);
      }
    }
  }
  bool Has(uint32_t function) const { return covered_[function]; }

 private:
  void Meet(uint32_t function) {
    if (!covered_[function]) {
      covered_[function] = true;
      waiting_.push_back(function);
    }
  }

  const AnalysisResult& result_;
  std::vector<bool> covered_;
  std::vector<uint32_t> waiting_;
};

std::vector<uint32_t> EntriesOf(const StackNeeds& needs, const InterruptLevels& interrupts) {
  std::vector<uint32_t> entries = interrupts.ignored;
  entries.insert(entries.end(), interrupts.handlers.begin(), interrupts.handlers.end());
  for (const StackNeed& need : needs.stacks) {
    entries.insert(entries.end(), need.dependsOn.begin(), need.dependsOn.end());
  }
  std::ranges::sort(entries);
  return entries;
}

// What starts the program is on the stack of main, below it.
bool StartsAnEntry(const GateInput& input, const std::vector<uint32_t>& entries) {
  Coverage below(input.result);
  below.Cover({*input.facts.entry});
  return std::ranges::any_of(entries, [&](uint32_t entry) { return below.Has(entry); });
}

}  // namespace

bool IsNameOfHandler(const ProgramFacts& facts, std::string_view name) {
  return std::ranges::any_of(facts.handlers, [&](const ProgramFacts::Handler& handler) {
    return std::ranges::find(handler.names, name) != handler.names.end();
  });
}

UnlistedTasks UnlistedTasksOf(const GateInput& input, const InterruptLevels& interrupts,
                              const StackNeeds& needs) {
  UnlistedTasks unlisted;
  const std::vector<uint32_t> entries = EntriesOf(needs, interrupts);
  Coverage coverage(input.result);
  coverage.Cover(entries);
  for (const ProgramFacts::Task& task : input.facts.tasks) {
    if (!std::ranges::binary_search(entries, task.function)) {
      unlisted.tasks.push_back(task.function);
    }
  }
  coverage.Cover(unlisted.tasks);
  for (const uint32_t root : input.result.roots) {
    const bool isStart = input.facts.entry == root && StartsAnEntry(input, entries);
    if (!coverage.Has(root) && !isStart && !IsNameOfHandler(input.facts, input.result.Name(root)) &&
        input.result.functions[root].Is(FN_DEFINED)) {
      unlisted.tops.push_back(root);
    }
  }
  return unlisted;
}

}  // namespace velkor::reports
