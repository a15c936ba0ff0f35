#include "reports/gate/stack_change.h"

#include <map>
#include <string_view>

namespace velkor::reports {
namespace {

std::map<std::string_view, uint64_t> BytesByName(const Baseline::Stack& before) {
  std::map<std::string_view, uint64_t> bytes;
  for (const auto& [name, own] : before.path) {
    bytes[name] += own;
  }
  return bytes;
}

std::optional<StackChange::Blamed> FindBlamed(const GateStack& stack,
                                              const std::vector<std::string>& names,
                                              const Baseline::Stack& before) {
  const std::map<std::string_view, uint64_t> old = BytesByName(before);
  std::optional<StackChange::Blamed> grown;
  std::optional<StackChange::Blamed> added;
  for (size_t i = 0; i < stack.rows.size(); ++i) {
    const StackRow& row = stack.rows[i];
    if (row.part == StackRow::Part::kFigure) {
      continue;
    }
    const bool isFirst = i == 0 || row.part == StackRow::Part::kInterrupt;
    StackChange::Blamed blamed{.function = row.function,
                               .caller = isFirst ? row.function : stack.rows[i - 1].function,
                               .before = {},
                               .after = row.bytes};
    const auto found = old.find(names[i]);
    if (found == old.end()) {
      added = added ? added : std::optional(blamed);
      continue;
    }
    blamed.before = found->second;
    if (row.bytes > found->second &&
        (!grown || row.bytes - found->second > grown->after - *grown->before)) {
      grown = blamed;
    }
  }
  return grown ? grown : added;
}

}  // namespace

StackChange ChangeOf(const GateStack& stack, const std::vector<std::string>& names,
                     const Baseline::Stack& before, std::optional<uint32_t> growth,
                     bool missesLess) {
  StackChange change;
  change.change = static_cast<int64_t>(stack.known) - static_cast<int64_t>(before.known);
  change.lostBound = before.bounded && !stack.bounded;
  change.isNowKnown = !before.bounded && (stack.bounded || missesLess);
  const bool isMore = growth && change.change > static_cast<int64_t>(*growth);
  change.hasGrown = isMore && !change.isNowKnown;
  change.blamed = FindBlamed(stack, names, before);
  return change;
}

}  // namespace velkor::reports
