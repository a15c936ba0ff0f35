#pragma once

#include <string>

#include "reports/analysis_result.h"
#include "reports/gate/gate_result.h"
#include "reports/gate/source_places.h"

namespace velkor::reports {

// Where findings lie: beside the source where the repository holds it, else in the configuration.
class FindingPlaces {
 public:
  FindingPlaces(const AnalysisResult& result, SourcePlaces& sources)
      : result_(result), sources_(sources) {}

  FindingPlace InConfiguration(TextPlace place) const {
    return {sources_.Configuration(), place.line, place.column};
  }
  // Of its definition; otherwise: where that is not to be shown.
  FindingPlace OfFunction(uint32_t function, TextPlace otherwise) {
    const AnalysedFunction& analysed = result_.functions[function];
    return Of(result_.File(analysed.file), analysed.line, 0, otherwise);
  }
  // The first of the calls through pointers, where the input has them; else the definition.
  FindingPlace OfIndirectCall(uint32_t function, TextPlace otherwise) {
    for (const AnalysedSite& site : result_.Sites(function)) {
      if (auto file = sources_.Find(result_.File(site.file)); file && site.line != 0) {
        return {*std::move(file), site.line, site.column};
      }
    }
    return OfFunction(function, otherwise);
  }
  FindingPlace Of(std::string_view file, uint32_t line, uint32_t column, TextPlace otherwise) {
    auto found = file.empty() ? std::nullopt : sources_.Find(file);
    return found ? FindingPlace{*std::move(found), line, column} : InConfiguration(otherwise);
  }
  // None: the repository does not show it.
  std::optional<FindingPlace> Shown(uint32_t function) {
    const AnalysedFunction& analysed = result_.functions[function];
    auto file = sources_.Find(result_.File(analysed.file));
    return file ? std::optional(FindingPlace{*std::move(file), analysed.line, 0}) : std::nullopt;
  }

 private:
  const AnalysisResult& result_;
  SourcePlaces& sources_;
};

}  // namespace velkor::reports
