#pragma once

#include <QLineEdit>
#include <QPushButton>

namespace velkor::ui {

// A button whose mnemonic presses it at once. The toolkit's own shows the press first and acts a
// tenth of a second later, after what the user has typed meanwhile.
class DialogButton : public QPushButton {
 public:
  using QPushButton::QPushButton;

 protected:
  bool event(QEvent* event) override;
};

// A field that takes no text from a letter pressed with Alt, the mnemonic of a disabled control.
class DialogField : public QLineEdit {
 public:
  using QLineEdit::QLineEdit;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace velkor::ui
