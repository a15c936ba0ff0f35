#include "ui/analysis_inputs.h"

namespace velkor::ui {

reports::AnalysisInputs InputsOf(CStkDoc& document) {
  reports::AnalysisInputs inputs;
  const std::vector<ModuleOutcome>& outcomes = document.ModuleOutcomes();
  for (size_t i = 0; i < outcomes.size(); ++i) {
    const std::string& module = document.Input()->Modules()[i];
    switch (outcomes[i]) {
      case ModuleOutcome::kRead:
        ++inputs.read;
        break;
      case ModuleOutcome::kMissing:
        inputs.missing.push_back(module);
        break;
      default:
        inputs.notWhole.push_back(module);
    }
  }
  return inputs;
}

}  // namespace velkor::ui
