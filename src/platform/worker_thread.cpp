#include "platform/worker_thread.h"

#include <algorithm>
#include <sched.h>
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

size_t WorkerThread::MostAtOnce() {
  cpu_set_t allowed;
  CPU_ZERO(&allowed);
  // Fails on a machine with more processors than the set has room for.
  const int count = sched_getaffinity(0, sizeof allowed, &allowed) == 0
                        ? CPU_COUNT(&allowed)
                        : static_cast<int>(std::thread::hardware_concurrency());
  return static_cast<size_t>(std::max(count, 1));
}

}  // namespace velkor
