#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

namespace velkor {

// A flag that threads wait for. With automatic reset, one successful wait or test consumes the
// signal. All operations may be called from any thread. An event must outlive its waiters; where
// that is not certain, share it.
class Event {
 public:
  enum class Reset { kAutomatic, kManual };

  explicit Event(Reset reset) : reset_(reset) {}
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;

  void Set();
  void ResetEvent();
  // Without waiting: true when signalled.
  bool Test();
  void Wait();
  // Waits until one of the two is signalled: 0 for the first, 1 for the second; the first when
  // both are. Consumes (automatic reset) only the one that is answered.
  static int WaitForEither(Event& first, Event& second);

 private:
  struct Wakeup {
    std::mutex mutex;
    std::condition_variable condition;
    bool pending = false;
  };

  // Has a wakeup told about every signal of the event for as long as it exists.
  class Listening {
   public:
    Listening(Event& event, std::shared_ptr<Wakeup> wakeup);
    ~Listening();
    Listening(const Listening&) = delete;
    Listening& operator=(const Listening&) = delete;

   private:
    Event& event_;
    const std::shared_ptr<Wakeup> wakeup_;
  };

  bool TestLocked();

  const Reset reset_;
  std::mutex mutex_;
  std::condition_variable condition_;
  bool signalled_ = false;
  std::vector<std::shared_ptr<Wakeup>> listeners_;  // waits on two events that watch this one
};

}  // namespace velkor
