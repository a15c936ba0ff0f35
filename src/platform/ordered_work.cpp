#include "platform/ordered_work.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/worker_thread.h"

namespace velkor {
namespace {

constexpr size_t kSlotsPerThread = 2;
constexpr size_t kRangeSize = 4096;

class OrderedRun {
 public:
  explicit OrderedRun(const OrderedWork& work) : work_(work), slots_(work.Slots()) {}
  OrderedRun(const OrderedRun&) = delete;
  OrderedRun& operator=(const OrderedRun&) = delete;
  ~OrderedRun() {
    {
      const std::lock_guard lock(mutex_);
      ended_ = true;
    }
    changed_.notify_all();
    threads_.clear();
  }

  void Run() {
    threads_ = StartWorkers(slots_.size() / kSlotsPerThread - 1, [this] { Work(); });
    for (; taken_ < work_.parts; Advance()) {
      WaitForCurrent();
      Slot& slot = slots_[taken_ % slots_.size()];
      if (slot.failure) {
        std::rethrow_exception(slot.failure);
      }
      work_.take(taken_, taken_ % slots_.size());
    }
  }

 private:
  struct Slot {
    bool made = false;
    std::exception_ptr failure;
  };

  void Work() {
    std::unique_lock lock(mutex_);
    while (!ended_ && next_ < work_.parts) {
      if (MayBeMade()) {
        MakeNext(lock);
      } else {
        changed_.wait(lock);
      }
    }
  }

  void WaitForCurrent() {
    std::unique_lock lock(mutex_);
    const Slot& slot = slots_[taken_ % slots_.size()];
    while (!slot.made) {
      if (MayBeMade()) {
        MakeNext(lock);
      } else {
        changed_.wait(lock);
      }
    }
  }

  // Under the mutex.
  bool MayBeMade() const { return next_ < work_.parts && next_ < taken_ + slots_.size(); }

  void MakeNext(std::unique_lock<std::mutex>& lock) {
    const size_t part = next_++;
    Slot& slot = slots_[part % slots_.size()];
    lock.unlock();
    try {
      work_.make(part, part % slots_.size());
    } catch (...) {
      slot.failure = std::current_exception();
    }
    lock.lock();
    slot.made = true;
    changed_.notify_all();
  }

  void Advance() {
    {
      const std::lock_guard lock(mutex_);
      slots_[taken_ % slots_.size()].made = false;
      ++taken_;
    }
    changed_.notify_all();
  }

  const OrderedWork& work_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Slot> slots_;
  size_t next_ = 0;   // the first part that nobody makes yet
  size_t taken_ = 0;  // as many parts have been taken
  bool ended_ = false;
  std::vector<std::unique_ptr<WorkerThread>> threads_;
};

}  // namespace

size_t OrderedWork::Slots() const {
  return std::min(ThreadCount(threads), parts) * kSlotsPerThread;
}

void OrderedWork::Run() const {
  if (parts != 0) {
    OrderedRun(*this).Run();
  }
}

void ForEachRange(size_t count, size_t threads,
                  const std::function<void(uint32_t first, uint32_t end)>& work) {
  OrderedWork{.parts = (count + kRangeSize - 1) / kRangeSize,
              .threads = threads,
              .make =
                  [&](size_t part, size_t) {
                    const size_t first = part * kRangeSize;
                    work(static_cast<uint32_t>(first),
                         static_cast<uint32_t>(std::min(count, first + kRangeSize)));
                  },
              .take = [](size_t, size_t) {}}
      .Run();
}

}  // namespace velkor
