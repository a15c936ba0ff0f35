#include "document/spec_write_job.h"

#include <utility>

#include "document/notifications.h"
#include "document/output_path.h"
#include "files/fingerprint.h"

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
      keeper_(order_.path, order_.seen, host, reporter, [this] { return StopSeen(); }) {}

StkSpecWriteJob::~StkSpecWriteJob() {
  Stop();
}

WorkEnd StkSpecWriteJob::Run() {
  StkSpecWriter writer(order_.mode, order_.path, functions_, host_, [this] { return StopSeen(); });
  if (IsAutomatic()) {
    writer.SetMayReplace([this](InputFile* old) { return MayReplace(old); });
  }
  writer.SetKeptLines(order_.keptLines);
  Post(WM_STK_SPECWRITE_START, writer.CountToWrite());
  const WorkEnd end = WriteFile(writer);
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

WorkEnd StkSpecWriteJob::WriteFile(StkSpecWriter& writer) {
  if (!PathAllowed()) {
    return Stopped() ? WorkEnd::kStopped : WorkEnd::kFailed;
  }
  if (!writer.Open()) {
    writer.PostFailure(reporter_);
    return WorkEnd::kFailed;
  }
  return Write(writer);
}

bool StkSpecWriteJob::PathAllowed() {
  if (!CheckOutputPath(order_.path, order_.inputs, host_, reporter_)) {
    return false;
  }
  if (!IsAutomatic()) {
    return true;
  }
  if (host_.files.LeadsOutOfFolder(order_.path)) {
    reporter_.PostWarning(MessageKey::kW9402, {MessageFile{order_.path}});
    return false;
  }
  return Keep();
}

bool StkSpecWriteJob::Keep() {
  switch (keeper_.Keep()) {
    case StkSystemFileKeeper::State::kMayBeReplaced:
      return true;
    case StkSystemFileKeeper::State::kChanged:
      changed_ = keeper_.TakeChanged();
      return false;
    case StkSystemFileKeeper::State::kNotKept:
      break;
  }
  if (Stopped()) {
    return false;
  }
  reporter_.PostWarning(MessageKey::kW9402, {MessageFile{order_.path}});
  return false;
}

// Another program may have saved since the file was kept.
bool StkSpecWriteJob::MayReplace(InputFile* old) {
  return old == nullptr || keeper_.IsKept(*old);
}

WorkEnd StkSpecWriteJob::Write(StkSpecWriter& writer) {
  if (!IsAutomatic()) {
    reporter_.PostLog(MessageKey::kWritingStarted, {order_.path});
  }
  const WorkEnd end = writer.Write([this](uint32_t count) { return AfterFunction(count); });
  const bool completed = end == WorkEnd::kCompleted;
  writer.PostRefused(reporter_);
  written_ = writer.Fingerprint();
  if (end == WorkEnd::kFailed && (!keeper_.Overtaken() || Keep())) {
    writer.PostFailure(reporter_);
  }
  if (!IsAutomatic()) {
    reporter_.PostLog(completed ? MessageKey::kWritingCompleted : MessageKey::kWritingAborted,
                      {order_.path});
  }
  return completed ? WorkEnd::kCompleted : Stopped() ? WorkEnd::kStopped : WorkEnd::kFailed;
}

bool StkSpecWriteJob::AfterFunction(uint32_t count) {
  if ((count - 1) % kFunctionsPerStopTest != 0) {
    return true;
  }
  if (StopSeen()) {
    return false;
  }
  Post(WM_STK_SPECWRITE_PROGRESS, count);
  return true;
}

}  // namespace velkor
