#include "platform/message_target.h"

#include <utility>

namespace velkor {

void MessageQueue::Post(std::function<void()> handler) {
  {
    const std::lock_guard lock(mutex_);
    handlers_.push_back(std::move(handler));
  }
  arrived_.Set();
}

bool MessageQueue::Drain() {
  bool handled = false;
  while (RunOne()) {
    handled = true;
  }
  return handled;
}

void MessageQueue::RunUntil(const std::function<bool()>& finished) {
  while (!finished()) {
    if (!RunOne()) {
      arrived_.Wait();
    }
  }
}

bool MessageQueue::RunOne() {
  std::function<void()> handler;
  {
    const std::lock_guard lock(mutex_);
    if (handlers_.empty()) {
      return false;
    }
    handler = std::move(handlers_.front());
    handlers_.pop_front();
  }
  handler();
  return true;
}

}  // namespace velkor
