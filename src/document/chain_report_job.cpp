#include "document/chain_report_job.h"

#include <utility>

#include "core/chain_count.h"
#include "document/notifications.h"
#include "document/output_path.h"

namespace velkor {

namespace {

constexpr uint32_t kReportLinesPerStopTest = 10;

}  // namespace

StkChainReportJob::StkChainReportJob(ChainReportOrder order, Host& host, StkReporter& reporter,
                                     MessageTarget& mainWindow)
    : StkJob(Event::Reset::kAutomatic, mainWindow),
      order_(std::move(order)),
      host_(host),
      reporter_(reporter) {}

StkChainReportJob::~StkChainReportJob() {
  Stop();
}

WorkEnd StkChainReportJob::Run() {
  Post(WM_STK_CHAINSAVE_START, ExpectedLines());
  const WorkEnd end = WriteFile();
  PostEnd(WM_STK_CHAINSAVE_END);
  return end;
}

WorkEnd StkChainReportJob::WriteFile() {
  if (!CheckOutputPath(order_.path, order_.inputs, host_, reporter_)) {
    return WorkEnd::kFailed;
  }
  StkChainReport report(order_.format, order_.path, host_, reporter_.Messages(),
                        [this] { return StopSeen(); });
  if (!report.Open()) {
    report.PostFailure(reporter_);
    return WorkEnd::kFailed;
  }
  return Write(report);
}

void StkChainReportJob::Abandon() {
  try {
    reporter_.PostWarning(MessageKey::kW9404, {MessageFile{order_.path}});
    if (started_) {
      reporter_.PostLog(MessageKey::kWritingAborted, {order_.path});
    }
  } catch (...) {
    // The messages have no room; the notification is what matters.
  }
  PostEnd(WM_STK_CHAINSAVE_END);
}

uint32_t StkChainReportJob::ExpectedLines() const {
  const uint32_t heading = order_.format == StkChainReport::Format::kCsv ? 1 : 0;
  return static_cast<uint32_t>(CountChains(order_.start, order_.mode)) + heading;
}

WorkEnd StkChainReportJob::Write(StkChainReport& report) {
  reporter_.PostLog(MessageKey::kWritingStarted, {order_.path});
  started_ = true;
  const WorkEnd end =
      report.Write(order_.start, order_.mode, [this](uint32_t lines) { return AfterChain(lines); });
  if (end == WorkEnd::kFailed) {
    report.PostFailure(reporter_);
  }
  const bool completed = end == WorkEnd::kCompleted;
  reporter_.PostLog(completed ? MessageKey::kWritingCompleted : MessageKey::kWritingAborted,
                    {order_.path});
  return completed ? WorkEnd::kCompleted : Stopped() ? WorkEnd::kStopped : WorkEnd::kFailed;
}

// A chain may take several lines: what counts is that a tenth line was passed.
bool StkChainReportJob::AfterChain(uint32_t lines) {
  const uint32_t before = std::exchange(lines_, lines);
  if (before / kReportLinesPerStopTest == lines / kReportLinesPerStopTest) {
    return true;
  }
  if (StopSeen()) {
    return false;
  }
  Post(WM_STK_CHAINSAVE_PROGRESS, lines);
  return true;
}

}  // namespace velkor
