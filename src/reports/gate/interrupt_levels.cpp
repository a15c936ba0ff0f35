#include "reports/gate/interrupt_levels.h"

#include <algorithm>
#include <set>

namespace velkor::reports {
namespace {

class LevelSearch {
 public:
  explicit LevelSearch(const GateInput& input) : input_(input) {}

  InterruptLevels Run() {
    if (const auto& interrupts = input_.configuration.interrupts) {
      TakeIgnored(*interrupts);
      if (interrupts->levels) {
        TakeLevels(*interrupts->levels);
      }
    }
    TakeUnlisted();
    if (const auto& interrupts = input_.configuration.interrupts; interrupts) {
      if (interrupts->nesting) {
        KeepLargest(*interrupts->nesting);
      }
    }
    std::ranges::sort(found_.handlers);
    return std::move(found_);
  }

 private:
  std::optional<uint32_t> Find(const Configuration::Name& name) {
    if (!named_.insert(name.text).second) {
      found_.faults.push_back({name.place, "the handler \"" + name.text + "\" is named twice"});
    }
    const FoundFunction found = FindHandler(input_, name.text);
    if (!found.function) {
      found_.missing.push_back({name, found.error});
    }
    return found.function;
  }

  void TakeIgnored(const Configuration::Interrupts& interrupts) {
    for (const Configuration::Name& name : interrupts.ignore) {
      if (const std::optional<uint32_t> function = Find(name)) {
        found_.ignored.push_back(*function);
      }
    }
    std::ranges::sort(found_.ignored);
  }

  void TakeLevels(const std::vector<std::vector<Configuration::Name>>& levels) {
    for (const std::vector<Configuration::Name>& names : levels) {
      InterruptLevel level;
      for (const Configuration::Name& name : names) {
        if (const std::optional<uint32_t> function = Find(name)) {
          level.handlers.push_back(*function);
        }
      }
      if (!level.handlers.empty()) {
        Add(std::move(level));
      }
    }
  }

  void Add(InterruptLevel level) {
    level.deepest = DeepestOf(input_.result, level.handlers);
    for (const uint32_t handler : level.handlers) {
      if (std::ranges::find(found_.handlers, handler) == found_.handlers.end()) {
        found_.handlers.push_back(handler);
      }
    }
    found_.levels.push_back(std::move(level));
  }

  // What stands in the vector table runs, whether somebody has thought of it or not.
  void TakeUnlisted() {
    const auto& interrupts = input_.configuration.interrupts;
    for (const ProgramFacts::Handler& handler : input_.facts.handlers) {
      const uint32_t function = handler.function;
      if (std::ranges::binary_search(found_.ignored, function) ||
          std::ranges::find(found_.handlers, function) != found_.handlers.end()) {
        continue;
      }
      if (!interrupts || !interrupts->nesting) {
        found_.unlisted.push_back(function);
      }
      Add({.deepest = function, .handlers = {function}});
    }
  }

  void KeepLargest(uint32_t count) {
    if (!input_.facts.hasVectors) {
      found_.faults.push_back({input_.configuration.PlaceOf("interrupts.nesting"),
                               "\"nesting\" counts the handlers of a vector table, and none is "
                               "known: name them in \"levels\""});
    }
    std::ranges::stable_sort(found_.levels, [this](const auto& left, const auto& right) {
      return KnownOf(left) > KnownOf(right);
    });
    found_.levels.resize(std::min<size_t>(found_.levels.size(), count));
  }

  uint64_t KnownOf(const InterruptLevel& level) const {
    return input_.result.functions[level.deepest].known;
  }

  const GateInput& input_;
  InterruptLevels found_;
  std::set<std::string, std::less<>> named_;
};

}  // namespace

InterruptLevels LevelsOf(const GateInput& input) {
  return input.isConfigured ? LevelSearch(input).Run() : InterruptLevels();
}

uint32_t DeepestOf(const AnalysisResult& result, const std::vector<uint32_t>& functions) {
  return *std::ranges::max_element(
      functions, {}, [&](uint32_t function) { return result.functions[function].known; });
}

}  // namespace velkor::reports
