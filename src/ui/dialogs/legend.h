#pragma once

#include <QDialog>

#include "ui/ui_context.h"

namespace velkor::ui {

// What the colours and signs of the icons, and the marks beside names and numbers, mean. Stays
// beside the window while the user works there.
class Legend : public QDialog {
 public:
  Legend(const UiContext& context, QWidget* parent);
};

}  // namespace velkor::ui
