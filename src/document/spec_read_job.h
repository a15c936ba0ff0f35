#pragma once

#include <memory>
#include <vector>

#include "core/function_table.h"
#include "core/root_list.h"
#include "document/job.h"
#include "files/spec_reader.h"
#include "messages/reporter.h"

namespace velkor {

// Reads an ordered list of specification sources, which it owns, and computes the totals after
// each.
class StkSpecReadJob : public StkJob {
 public:
  StkSpecReadJob(std::vector<std::unique_ptr<StkSpecReader>> sources, StkFunctionTable& functions,
                 StkRootList& roots, StkReporter& reporter, MessageTarget& mainWindow);
  ~StkSpecReadJob() override;

 protected:
  void Run() override;

 private:
  void ReadSource(StkSpecReader& source);
  // True when the end of the file was reached.
  bool ReadLines(StkSpecReader& source, StkByteSource& bytes);
  void HandOver(StkSpecReader& source);

  std::vector<std::unique_ptr<StkSpecReader>> sources_;
  StkFunctionTable& functions_;
  StkRootList& roots_;
  StkReporter& reporter_;
};

}  // namespace velkor
