#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/function.h"
#include "document/job.h"
#include "document/job_kind.h"
#include "files/chain_report.h"
#include "messages/reporter.h"
#include "platform/host.h"

namespace velkor {

struct ChainReportOrder {
  std::string path;
  const StkFunction& start;
  ChainMode mode = ChainMode::kMaximum;
  StkChainReport::Format format = StkChainReport::Format::kText;
  // Files that the analysis is made from: none of them is overwritten.
  std::vector<std::string> inputs;
};

// Writes a call chain report. Posts its end notification at every end. The functions must not
// change meanwhile.
class StkChainReportJob : public StkJob {
 public:
  static constexpr JobKind kKind = JobKind::kChainSave;

  StkChainReportJob(ChainReportOrder order, Host& host, StkReporter& reporter,
                    MessageTarget& mainWindow);
  ~StkChainReportJob() override;

 protected:
  WorkEnd Run() override;
  void Abandon() override;

 private:
  uint32_t ExpectedLines() const;
  WorkEnd WriteFile();
  WorkEnd Write(StkChainReport& report);
  bool AfterChain(uint32_t lines);

  const ChainReportOrder order_;
  Host& host_;
  StkReporter& reporter_;
  bool started_ = false;  // the log says so
  uint32_t lines_ = 0;
};

}  // namespace velkor
