#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "reports/comparison.h"

namespace velkor::reports {

// How what a comparison says is put into words, for each of its outputs.
class ComparisonTexts {
 public:
  // How a name is shown: on one line, and so that it means nothing but itself.
  using ShowName = std::string (*)(std::string_view);

  ComparisonTexts(const Comparison& comparison, const ComparedAnalysis& before,
                  const ComparedAnalysis& after, ShowName showName)
      : comparison_(comparison), before_(before), after_(after), showName_(showName) {}

  // "Stack: 1 lost its bound, 2 grew (old.json → new.json)"
  std::string Heading() const;
  std::string_view Change(const ComparedEntry& entry) const;
  std::string Name(const ComparedEntry& entry) const;
  // "≥10"; empty where the analysis does not hold the function.
  std::string Before(const ComparedEntry& entry) const;
  std::string After(const ComparedEntry& entry) const;
  // "+212"; empty where there is nothing to compare.
  static std::string Difference(const ComparedEntry& entry);
  // "main +212: parse_frame (src/rx.c:88) 24 → 236, by main → rx_poll → parse_frame"
  std::string Cause(const ChangeCause& cause) const;

 private:
  std::string Known(const ComparedAnalysis& analysis, uint32_t function) const;
  std::string What(const ChangeCause& cause) const;
  std::string Entries(const ChangeCause& cause) const;
  std::string Path(const ChangeCause& cause) const;
  std::string Called(const ChangeCause& cause) const;
  std::string FunctionAndPlace(const ComparedAnalysis& analysis, uint32_t function) const;
  const ComparedAnalysis& AnalysisOf(const ChangeCause& cause) const {
    return cause.inOld ? before_ : after_;
  }

  const Comparison& comparison_;
  const ComparedAnalysis& before_;
  const ComparedAnalysis& after_;
  const ShowName showName_;
};

// The word for programs: "lost-bound", "over", "grew", "new", "shrank", "gained-bound", "gone",
// "unchanged".
std::string_view ChangeName(EntryChange change);

}  // namespace velkor::reports
