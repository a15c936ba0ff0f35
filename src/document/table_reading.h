#pragma once

#include <atomic>
#include <functional>
#include <memory>

#include "platform/worker_thread.h"

namespace velkor {

class CStkDoc;

// Work that reads the tables of a document in a thread of its own, beside the views, which read
// them too. It changes nothing. The document ends it before anything changes; whoever wants it done
// starts it anew when the views are told of the change. Not a job: it has no notifications, and
// nothing waits for its end but what would change the tables.
//
// Made, used and destroyed in the user-interface thread, before the document goes.
class StkTableReading {
 public:
  // Leaves the work, from within; thrown by a Checkpoint.
  struct Ended {};
  // The work calls it every few milliseconds while it reads the tables.
  using Checkpoint = std::function<void()>;
  // An exception that leaves it ends it and goes no further.
  using Work = std::function<void(const Checkpoint&)>;

  explicit StkTableReading(CStkDoc& document);
  ~StkTableReading();
  StkTableReading(const StkTableReading&) = delete;
  StkTableReading& operator=(const StkTableReading&) = delete;

  // After the end of the work that runs, if any. The bounds are up to date. False, and nothing is
  // done, without functions, while they belong to a job, and when no thread is to be had.
  bool Start(Work work);
  // Until the work has ended.
  void Stop();

 private:
  void Run(const Work& work);

  CStkDoc& document_;
  std::atomic<bool> stop_{false};
  std::unique_ptr<WorkerThread> thread_;
};

}  // namespace velkor
