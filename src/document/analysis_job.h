#pragma once

#include "core/file_table.h"
#include "core/function_table.h"
#include "document/job.h"
#include "messages/reporter.h"
#include "platform/host.h"
#include "readers/project.h"

namespace velkor {

// What the jobs work on: the parts of the document, which outlive them.
struct AnalysisParts {
  Host& host;
  StkReporter& reporter;
  StkProject& project;
  StkFileTable& files;
  StkFunctionTable& functions;
};

// Reads the modules of the project in order and resolves their calls.
class StkAnalysisJob : public StkJob {
 public:
  StkAnalysisJob(AnalysisParts parts, MessageTarget& mainWindow);
  ~StkAnalysisJob() override;

 protected:
  void Run() override;

 private:
  bool AnyModuleExists();
  // False when the user stopped it.
  bool ReadModule(const std::string& path);

  AnalysisParts parts_;
};

}  // namespace velkor
