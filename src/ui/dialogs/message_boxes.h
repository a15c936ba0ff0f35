#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>
#include <string>

#include "messages/boxes.h"
#include "messages/catalogue.h"
#include "ui/notification_queue.h"

namespace velkor::ui {

// Message boxes on the screen, in front of whatever window is in use.
class WindowBoxes : public MessageBoxes {
 public:
  // title: what every box has as its title, as bytes of the code page.
  WindowBoxes(const StkMessages& messages, std::string title);

  // In front of which the boxes open once it is shown.
  void SetMainWindow(QWidget* window) { mainWindow_ = window; }
  BoxAnswer Show(const StkMessage& message, BoxIcon icon, BoxButtons buttons) override;

 private:
  QWidget* Parent() const;

  const StkMessages& messages_;
  std::string title_;
  QPointer<QWidget> mainWindow_;
};

// Other boxes, with what jobs ask for held back while one is open.
class HoldingBoxes : public MessageBoxes {
 public:
  HoldingBoxes(MessageBoxes& boxes, NotificationQueue& posted) : boxes_(boxes), posted_(posted) {}

  BoxAnswer Show(const StkMessage& message, BoxIcon icon, BoxButtons buttons) override {
    const NotificationQueue::Hold hold(posted_);
    return boxes_.Show(message, icon, buttons);
  }

 private:
  MessageBoxes& boxes_;
  NotificationQueue& posted_;
};

// The text with places to break the line in words that are longer than a box is wide, as paths and
// function names can be.
QString Breakable(const QString& text);

}  // namespace velkor::ui
