#pragma once

#include <QDialog>

#include "ui/ui_context.h"
#include "ui/version_texts.h"

namespace velkor {

// Name, version and rights. Run it with exec.
class CAboutBox : public QDialog {
 public:
  CAboutBox(const UiContext& context, const VersionTexts& version, QWidget* parent = nullptr);
};

}  // namespace velkor
