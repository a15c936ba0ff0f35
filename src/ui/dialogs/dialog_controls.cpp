#include "ui/dialogs/dialog_controls.h"

#include <QKeyEvent>
#include <QShortcutEvent>

namespace velkor::ui {

bool DialogButton::event(QEvent* event) {
  if (event->type() == QEvent::Shortcut && !static_cast<QShortcutEvent*>(event)->isAmbiguous()) {
    click();
    return true;
  }
  return QPushButton::event(event);
}

void DialogField::keyPressEvent(QKeyEvent* event) {
  const Qt::KeyboardModifiers held = event->modifiers();
  const bool isMnemonic = held.testFlag(Qt::AltModifier) && !held.testFlag(Qt::ControlModifier);
  if (isMnemonic && !event->text().isEmpty() && event->text().front().isPrint()) {
    event->ignore();
    return;
  }
  QLineEdit::keyPressEvent(event);
}

}  // namespace velkor::ui
