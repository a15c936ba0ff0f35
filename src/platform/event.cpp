#include "platform/event.h"

#include <algorithm>

namespace velkor {

void Event::Set() {
  // Everybody is told under the lock: a waiter that destroys the event after its wait then does so
  // only when this thread no longer touches it.
  const std::lock_guard lock(mutex_);
  signalled_ = true;
  if (reset_ == Reset::kManual) {
    condition_.notify_all();
  } else {
    condition_.notify_one();
  }
  for (const std::shared_ptr<Wakeup>& listener : listeners_) {
    const std::lock_guard listenerLock(listener->mutex);
    listener->pending = true;
    listener->condition.notify_one();
  }
}

void Event::ResetEvent() {
  const std::lock_guard lock(mutex_);
  signalled_ = false;
}

bool Event::Test() {
  const std::lock_guard lock(mutex_);
  return TestLocked();
}

void Event::Wait() {
  std::unique_lock lock(mutex_);
  condition_.wait(lock, [this] { return signalled_; });
  TestLocked();
}

int Event::WaitForEither(Event& first, Event& second) {
  const auto wakeup = std::make_shared<Wakeup>();
  const Listening firstListening(first, wakeup);
  const Listening secondListening(second, wakeup);
  while (true) {
    if (first.Test()) {
      return 0;
    }
    if (second.Test()) {
      return 1;
    }
    std::unique_lock lock(wakeup->mutex);
    wakeup->condition.wait(lock, [&wakeup] { return wakeup->pending; });
    wakeup->pending = false;
  }
}

bool Event::TestLocked() {
  const bool signalled = signalled_;
  if (reset_ == Reset::kAutomatic) {
    signalled_ = false;
  }
  return signalled;
}

Event::Listening::Listening(Event& event, std::shared_ptr<Wakeup> wakeup)
    : event_(event), wakeup_(std::move(wakeup)) {
  const std::lock_guard lock(event_.mutex_);
  event_.listeners_.push_back(wakeup_);
}

Event::Listening::~Listening() {
  const std::lock_guard lock(event_.mutex_);
  std::vector<std::shared_ptr<Wakeup>>& listeners = event_.listeners_;
  listeners.erase(std::find(listeners.begin(), listeners.end(), wakeup_));
}

}  // namespace velkor
