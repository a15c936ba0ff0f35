#include "platform/worker_thread.h"

#include <utility>

namespace velkor {

WorkerThread::WorkerThread(std::function<void()> work)
    : work_(std::move(work)), thread_([this] {
        resumed_.Wait();
        if (!abandoned_) {
          work_();
        }
      }) {}

WorkerThread::~WorkerThread() {
  if (!resumed_.Test()) {
    abandoned_ = true;
    resumed_.Set();
  }
  Wait();
}

void WorkerThread::Resume() {
  resumed_.Set();
}

void WorkerThread::Wait() {
  if (thread_.joinable()) {
    thread_.join();
  }
}

}  // namespace velkor
