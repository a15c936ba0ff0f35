#pragma once

#include <QCursor>
#include <QGuiApplication>

namespace velkor::ui {

// The pointer shows that work is going on, for as long as this lives. User-interface thread.
class WaitCursor {
 public:
  WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
  ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;
};

}  // namespace velkor::ui
