#pragma once

#include <QDialog>

#include "ui/ui_context.h"
#include "ui/version_texts.h"

namespace velkor::ui {

// Name, version and rights. Run it with exec.
class AboutBox : public QDialog {
 public:
  AboutBox(const UiContext& context, const VersionTexts& version, QWidget* parent = nullptr);
};

}  // namespace velkor::ui
