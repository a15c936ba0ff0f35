#include "reports/function_matching.h"

#include <string_view>
#include <unordered_map>

namespace velkor::reports {

FunctionMatching::FunctionMatching(const ComparedAnalysis& earlier, const ComparedAnalysis& later)
    : before(later.functions.size(), kNone), after(earlier.functions.size(), kNone) {
  JoinEqual(earlier.keys, later.keys, false);
  JoinEqual(earlier.symbols, later.symbols, true);
}

void FunctionMatching::Join(uint32_t earlier, uint32_t later) {
  before[later] = earlier;
  after[earlier] = later;
  ++count;
}

// Of those that are not joined yet: the first with the first, or only where there is one of each.
void FunctionMatching::JoinEqual(const TextList& earlier, const TextList& later, bool onlySingle) {
  struct Namesakes {
    std::vector<uint32_t> earlier, later;
  };
  std::unordered_map<std::string_view, Namesakes> namesakes;  // asked, never walked
  for (uint32_t function = 0; function < after.size(); ++function) {
    if (after[function] == kNone) {
      namesakes[earlier[function]].earlier.push_back(function);
    }
  }
  std::vector<Namesakes*> found;
  for (uint32_t function = 0; function < before.size(); ++function) {
    const auto same = before[function] == kNone ? namesakes.find(later[function]) : namesakes.end();
    if (same != namesakes.end()) {
      same->second.later.push_back(function);
      if (same->second.later.size() == 1) {
        found.push_back(&same->second);
      }
    }
  }
  for (const Namesakes* same : found) {
    const bool isSingle = same->earlier.size() == 1 && same->later.size() == 1;
    for (size_t i = 0; i < same->earlier.size() && i < same->later.size(); ++i) {
      if (isSingle || !onlySingle) {
        Join(same->earlier[i], same->later[i]);
      }
    }
  }
}

}  // namespace velkor::reports
