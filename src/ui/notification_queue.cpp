#include "ui/notification_queue.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QScopedValueRollback>

namespace velkor::ui {

namespace {

constexpr qint64 kHandlingMilliseconds = 15;

}  // namespace

NotificationQueue::Hold::Hold(NotificationQueue& posted) : posted_(posted) {
  ++posted_.holds_;
  // What waits behind the request that shows the box: nothing may be posted after it.
  posted_.goOn_.start();
}

NotificationQueue::Hold::~Hold() {
  --posted_.holds_;
  posted_.goOn_.start();
}

NotificationQueue::NotificationQueue() {
  goOn_.setSingleShot(true);
  goOn_.setInterval(0);
  connect(&goOn_, &QTimer::timeout, this, [this] { HandleSome(); });
}

void NotificationQueue::SetHandlers(Handlers handlers) {
  handlers_ = std::move(handlers);
  goOn_.start();
}

void NotificationQueue::ClearHandlers() {
  handlers_ = {};
}

void NotificationQueue::Post(uint32_t message, uint64_t parameter) {
  const std::lock_guard lock(mutex_);
  notifications_.push_back({nextNumber_++, message, parameter});
  Wake();
}

void NotificationQueue::PostRequest() {
  const std::lock_guard lock(mutex_);
  requests_.push_back(nextNumber_++);
  Wake();
}

void NotificationQueue::Wake() {
  if (!awake_) {
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    awake_ = true;
  }
}

bool NotificationQueue::event(QEvent* event) {
  if (event->type() != QEvent::User) {
    return QObject::event(event);
  }
  {
    const std::lock_guard lock(mutex_);
    awake_ = false;
  }
  HandleSome();
  return true;
}

void NotificationQueue::HandleAll() {
  while (HandleOne()) {
  }
  TellNotified();
}

// The rest waits for a timer, not for another posted event: those would be handled before the
// user's input.
void NotificationQueue::HandleSome() {
  QElapsedTimer slice;
  slice.start();
  while (slice.elapsed() < kHandlingMilliseconds && HandleOne()) {
  }
  TellNotified();
  const std::lock_guard lock(mutex_);
  if (WhatIsNext() != Next::kNothing) {
    goOn_.start();
  }
}

void NotificationQueue::TellNotified() {
  if (std::exchange(notified_, false) && handlers_.notified) {
    handlers_.notified();
  }
}

// Under the lock.
NotificationQueue::Next NotificationQueue::WhatIsNext() const {
  const bool notification = !notifications_.empty() && handlers_.notification && !notifying_;
  const bool request = !requests_.empty() && handlers_.request && !notifying_ && holds_ == 0;
  if (notification && request) {
    return notifications_.front().number < requests_.front() ? Next::kNotification : Next::kRequest;
  }
  return notification ? Next::kNotification : request ? Next::kRequest : Next::kNothing;
}

bool NotificationQueue::HandleOne() {
  std::unique_lock lock(mutex_);
  switch (WhatIsNext()) {
    case Next::kNothing:
      return false;
    case Next::kNotification: {
      const Notification notification = notifications_.front();
      notifications_.pop_front();
      lock.unlock();
      HandleNotification(notification);
      return true;
    }
    case Next::kRequest: {
      requests_.pop_front();
      lock.unlock();
      TellNotified();  // a box may stay open for long
      const Hold hold(*this);
      handlers_.request();
      return true;
    }
  }
  return false;
}

void NotificationQueue::HandleNotification(const Notification& notification) {
  const QScopedValueRollback notifying(notifying_, true);
  notified_ = true;
  handlers_.notification(notification.message, notification.parameter);
}

}  // namespace velkor::ui
