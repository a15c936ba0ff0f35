#pragma once

#include <string>
#include <vector>

#include "core/recompute.h"
#include "document/job.h"
#include "document/job_kind.h"
#include "document/module_outcome.h"
#include "document/module_read_ahead.h"
#include "messages/reporter.h"
#include "platform/host.h"
#include "readers/program_input.h"

namespace velkor {

// What the jobs work on: the parts of the document, which outlive them.
struct AnalysisParts {
  Host& host;
  StkReporter& reporter;
  ProgramInput& input;
  FunctionDatabase database;
};

// Enters the modules of the input in order and resolves their calls: completed when every one was
// tried, failed also when not one module file exists. When it is stopped it posts
// no end notification, and what it has entered so far is the owner's to discard.
class StkAnalysisJob : public StkJob {
 public:
  static constexpr JobKind kKind = JobKind::kAnalysis;

  StkAnalysisJob(AnalysisParts parts, MessageTarget& mainWindow);
  ~StkAnalysisJob() override;

  // Of each module of the input, in its order. Valid after Wait.
  const std::vector<ModuleOutcome>& Outcomes() const { return outcomes_; }

 protected:
  WorkEnd Run() override;
  void Abandon() override;

 private:
  bool AnyModuleExists();
  // False after a stop.
  bool ReadModules();
  void EnterModule(ModuleReadAhead& modules, size_t number);
  void ReportNotOpened(FileFailure failure);

  AnalysisParts parts_;
  std::string currentPath_;
  std::vector<ModuleOutcome> outcomes_;
};

}  // namespace velkor
