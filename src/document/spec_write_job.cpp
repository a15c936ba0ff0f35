#include "document/spec_write_job.h"

#include <utility>

#include "document/fingerprint.h"
#include "document/notifications.h"
#include "document/output_path.h"

namespace velkor {

namespace {

constexpr uint32_t kFunctionsPerStopTest = 10;

}  // namespace

StkSpecWriteJob::StkSpecWriteJob(SpecWriteOrder order, const StkFunctionTable& functions,
                                 Host& host, StkReporter& reporter, MessageTarget& mainWindow)
    : StkJob(Event::Reset::kAutomatic, mainWindow),
      order_(std::move(order)),
      functions_(functions),
      host_(host),
      reporter_(reporter),
      keeper_(order_.path, order_.known, host, reporter) {}

StkSpecWriteJob::~StkSpecWriteJob() {
  Stop();
}

JobEnd StkSpecWriteJob::Run() {
  StkSpecWriter writer(order_.mode, order_.path, functions_, host_);
  writer.SetMayReplace(
      [this](const std::string& newPath, InputFile* old) { return MayReplace(newPath, old); });
  writer.SetKeptLines(order_.keptLines);
  Post(WM_STK_SPECWRITE_START, writer.CountToWrite());
  const JobEnd end = WriteFile(writer);
  PostEnd(WM_STK_SPECWRITE_END);
  return end;
}

void StkSpecWriteJob::Abandon() {
  try {
    reporter_.PostWarning(MessageKey::kW9404, {MessageFile{order_.path}});
  } catch (...) {
    // The warning has no room; the notification is what matters.
  }
  PostEnd(WM_STK_SPECWRITE_END);
}

JobEnd StkSpecWriteJob::WriteFile(StkSpecWriter& writer) {
  if (!PathAllowed()) {
    return JobEnd::kFailed;
  }
  if (!writer.Open()) {
    writer.PostFailure(reporter_);
    return JobEnd::kFailed;
  }
  return Write(writer);
}

bool StkSpecWriteJob::PathAllowed() {
  if (!CheckOutputPath(order_.path, order_.inputs, host_, reporter_)) {
    return false;
  }
  if (IsAutomatic() && !keeper_.Keep()) {
    reporter_.PostWarning(MessageKey::kW9402, {MessageFile{order_.path}});
    return false;
  }
  return true;
}

// Another program may have saved since the file was kept. The new file's fingerprint is taken
// before it stands where others replace it.
bool StkSpecWriteJob::MayReplace(const std::string& newPath, InputFile* old) {
  written_ = FileFingerprint(host_.files, newPath);
  return old == nullptr || keeper_.IsKept(*old);
}

JobEnd StkSpecWriteJob::Write(StkSpecWriter& writer) {
  if (!IsAutomatic()) {
    reporter_.PostLog(MessageKey::kWritingStarted, {order_.path});
  }
  const WriteEnd end = writer.Write([this](uint32_t count) { return AfterFunction(count); });
  const bool completed = end == WriteEnd::kCompleted;
  writer.PostRefused(reporter_);
  if (end == WriteEnd::kFailed) {
    writer.PostFailure(reporter_);
  }
  if (!IsAutomatic()) {
    reporter_.PostLog(completed ? MessageKey::kWritingCompleted : MessageKey::kWritingAborted,
                      {order_.path});
  }
  return completed ? JobEnd::kCompleted : Stopped() ? JobEnd::kStopped : JobEnd::kFailed;
}

bool StkSpecWriteJob::AfterFunction(uint32_t count) {
  if ((count - 1) % kFunctionsPerStopTest != 0) {
    return true;
  }
  if (stopEvent_.Test()) {
    SetStopped();
    return false;
  }
  Post(WM_STK_SPECWRITE_PROGRESS, count);
  return true;
}

}  // namespace velkor
