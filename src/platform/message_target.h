#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>

#include "platform/event.h"

namespace velkor {

// The numbers from which posted notifications are counted.
constexpr uint32_t WM_USER = 0x400;

// A window, or what stands for one, to which numbered notifications are posted.
class MessageTarget {
 public:
  virtual ~MessageTarget() = default;
  // From any thread; never waits. Notifications of one thread are handled in their order.
  virtual void Post(uint32_t message, uint64_t parameter) = 0;
};

// Work handed to one thread by others: the message loop of programs without a window, and of
// tests. Posting is possible from any thread; Run and Drain belong to the one owning thread.
class MessageQueue {
 public:
  void Post(std::function<void()> handler);
  // Handles what is queued, and what its handlers queue, until nothing is left; does not wait.
  // Answers whether anything was handled.
  bool Drain();
  // Handles everything that arrives until finished() holds; tests it before every handler and
  // sleeps while nothing is queued, so whoever makes it hold from another thread posts afterwards.
  void RunUntil(const std::function<bool()>& finished);

 private:
  bool RunOne();

  std::mutex mutex_;
  std::deque<std::function<void()>> handlers_;
  Event arrived_{Event::Reset::kAutomatic};
};

}  // namespace velkor
