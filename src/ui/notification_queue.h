#pragma once

#include <QObject>
#include <QTimer>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <utility>

#include "platform/message_target.h"

namespace velkor::ui {

// What background jobs have posted to the window: notifications, and word of each request that
// waits in the reporter, in the order of posting. Handled in the user-interface thread in short
// slices, so that the window answers the user while a hundred thousand of them wait.
//
// A request may show a box, and a box runs an event loop of its own. Until it is closed no further
// request is handled: boxes never pile up, and the log keeps its order. Notifications go on
// meanwhile, so that progress moves and a job that has ended is finished; but one at a time, never
// inside the handling of another.
//
// Made and destroyed in the user-interface thread; no job may post while it is destroyed.
class NotificationQueue : public QObject, public MessageTarget {
 public:
  struct Handlers {
    std::function<void(uint32_t message, uint64_t parameter)> notification;
    std::function<void()> request;   // one of them is to be handled
    std::function<void()> notified;  // after one or more notifications
  };

  // While one lives, requests wait. User-interface thread.
  class Hold {
   public:
    explicit Hold(NotificationQueue& posted);
    ~Hold();
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

   private:
    NotificationQueue& posted_;
  };

  NotificationQueue();

  // User-interface thread. Until then, and after ClearHandlers, everything waits.
  void SetHandlers(Handlers handlers);
  void ClearHandlers();

  // Any thread.
  void Post(uint32_t message, uint64_t parameter) override;
  void PostRequest();

  // Everything that can be handled now, without slices. User-interface thread.
  void HandleAll();
  bool IsHeld() const { return holds_ > 0; }

  bool event(QEvent* event) override;

 private:
  struct Notification {
    uint64_t number;  // order of posting, shared with the requests
    uint32_t message;
    uint64_t parameter;
  };
  enum class Next { kNothing, kNotification, kRequest };

  void Wake();
  Next WhatIsNext() const;
  bool HandleOne();
  void HandleNotification(const Notification& notification);
  void HandleSome();
  void TellNotified();

  Handlers handlers_;
  int holds_ = 0;
  bool notifying_ = false;
  bool notified_ = false;
  QTimer goOn_;

  mutable std::mutex mutex_;
  std::deque<Notification> notifications_;
  std::deque<uint64_t> requests_;  // by their numbers
  uint64_t nextNumber_ = 0;
  bool awake_ = false;  // an event is on its way
};

}  // namespace velkor::ui
