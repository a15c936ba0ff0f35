#include "document/job.h"

#include <system_error>

namespace velkor {

StkJob::StkJob(Event::Reset reset, MessageTarget& mainWindow)
    : stopEvent_(reset), mainWindow_(mainWindow) {}

StkJob::~StkJob() {
  Stop();
}

void StkJob::Start() {
  stopEvent_.ResetEvent();
  try {
    thread_ = std::make_unique<WorkerThread>([this] { RunGuarded(); });
  } catch (const std::system_error&) {
    AbandonGuarded();
    return;
  }
  thread_->Resume();
}

void StkJob::Wait() {
  if (thread_) {
    thread_->Wait();
    thread_.reset();
  }
}

void StkJob::Stop() {
  if (thread_) {
    stopEvent_.Set();
    Wait();
  }
}

void StkJob::PostEnd(uint32_t message) {
  endPosted_ = true;
  Post(message);
}

void StkJob::RunGuarded() {
  try {
    end_ = Run();
  } catch (...) {
    AbandonGuarded();
  }
}

void StkJob::AbandonGuarded() {
  end_ = WorkEnd::kFailed;
  try {
    Abandon();
  } catch (...) {
    // Not even the notification could be posted. The job can still be stopped.
    endPosted_ = true;
  }
}

}  // namespace velkor
