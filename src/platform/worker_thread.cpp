#include "platform/worker_thread.h"

#include <system_error>
#include <utility>

#include "platform/host_program.h"

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

size_t ThreadCount(size_t wanted) {
  return wanted == 0 ? ProcessorsOfProgram() : wanted;
}

std::vector<std::unique_ptr<WorkerThread>> StartWorkers(size_t count,
                                                        const std::function<void()>& work) {
  std::vector<std::unique_ptr<WorkerThread>> workers;
  try {
    while (workers.size() < count) {
      workers.push_back(std::make_unique<WorkerThread>(work));
    }
  } catch (const std::system_error&) {
    // Fewer do the same.
  }
  for (const auto& worker : workers) {
    worker->Resume();
  }
  return workers;
}

}  // namespace velkor
