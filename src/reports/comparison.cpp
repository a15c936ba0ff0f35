#include "reports/comparison.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

#include "reports/change_causes.h"
#include "reports/function_matching.h"

namespace velkor::reports {
namespace {

constexpr uint32_t kUnmatched = FunctionMatching::kNone;

EntryChange ChangeOf(const ComparedFunction& before, const ComparedFunction& after) {
  if (before.state != after.state) {
    switch (after.state) {
      case BoundState::kUnbounded:
        return EntryChange::kLostBound;
      case BoundState::kOver:
        return EntryChange::kOver;
      case BoundState::kBounded:
        return before.state == BoundState::kUnbounded ? EntryChange::kGainedBound
                                                      : EntryChange::kShrank;
    }
  }
  return after.known > before.known   ? EntryChange::kGrew
         : after.known < before.known ? EntryChange::kShrank
                                      : EntryChange::kUnchanged;
}

class Comparing {
 public:
  Comparing(const ComparedAnalysis& before, const ComparedAnalysis& after)
      : before_(before), after_(after), matching_(before, after) {}

  Comparison Run() {
    comparison_.matched = matching_.count;
    CollectEntries();
    std::ranges::stable_sort(comparison_.entries, [](const auto& left, const auto& right) {
      return left.change != right.change ? left.change < right.change : Size(left) > Size(right);
    });
    FindCauses();
    return std::move(comparison_);
  }

 private:
  static uint64_t Size(const ComparedEntry& entry) {
    return std::max(entry.knownBefore, entry.knownAfter) -
           std::min(entry.knownBefore, entry.knownAfter);
  }

  // Top-level in one of the two analyses, and held by both or by one alone.
  void CollectEntries() {
    for (uint32_t function = 0; function < after_.functions.size(); ++function) {
      const ComparedFunction& now = after_.functions[function];
      const uint32_t same = matching_.before[function];
      if (same == kUnmatched) {
        if (now.isTopLevel) {
          comparison_.entries.push_back({EntryChange::kAdded, {}, function, 0, now.known});
        }
      } else if (now.isTopLevel || before_.functions[same].isTopLevel) {
        const ComparedFunction& then = before_.functions[same];
        comparison_.entries.push_back({ChangeOf(then, now), same, function, then.known, now.known});
      }
    }
    for (uint32_t function = 0; function < before_.functions.size(); ++function) {
      const ComparedFunction& then = before_.functions[function];
      if (matching_.after[function] == kUnmatched && then.isTopLevel) {
        comparison_.entries.push_back({EntryChange::kRemoved, function, {}, then.known, 0});
      }
    }
  }

  void FindCauses() {
    ChangeCauses worse(after_, before_, matching_.before);
    ChangeCauses better(before_, after_, matching_.after);
    for (size_t i = 0; i < comparison_.entries.size(); ++i) {
      const ComparedEntry& entry = comparison_.entries[i];
      switch (entry.change) {
        case EntryChange::kLostBound:
        case EntryChange::kOver:
        case EntryChange::kGrew:
          AddCause(worse.Of(*entry.after), i, false);
          break;
        case EntryChange::kShrank:
          AddCause(better.Of(*entry.before), i, true);
          break;
        default:
          break;
      }
    }
  }

  // One cause of several top-level functions stands once.
  void AddCause(ChangeCause cause, size_t entry, bool inOld) {
    const auto key = std::tuple(cause.kind, cause.reason, inOld, cause.function);
    const auto [place, isNew] = causes_.try_emplace(key, comparison_.causes.size());
    if (isNew) {
      cause.inOld = inOld;
      comparison_.causes.push_back(std::move(cause));
    }
    comparison_.causes[place->second].entries.push_back(entry);
  }

  const ComparedAnalysis& before_;
  const ComparedAnalysis& after_;
  const FunctionMatching matching_;
  std::map<std::tuple<ChangeCause::Kind, ReasonKind, bool, uint32_t>, size_t> causes_;
  Comparison comparison_;
};

}  // namespace

size_t Comparison::Count(EntryChange change) const {
  return static_cast<size_t>(std::ranges::count(entries, change, &ComparedEntry::change));
}

Comparison Compare(const ComparedAnalysis& before, const ComparedAnalysis& after) {
  return Comparing(before, after).Run();
}

}  // namespace velkor::reports
