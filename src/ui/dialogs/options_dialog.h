#pragma once

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

#include "ui/ui_context.h"
#include "ui/window_settings.h"

namespace velkor::ui {

// How the files of the open project are read (code page, where its folders are), and the editor
// that opens sources. What cannot be used is refused when OK is chosen.
class OptionsDialog : public QDialog {
 public:
  // hasProject: without one only the editor can be stated.
  OptionsDialog(const UiContext& context, bool hasProject, const ProjectSettings& project,
                const QString& editor, QWidget* parent);

  ProjectSettings Project() const;
  QString Editor() const { return editor_->text().trimmed(); }

  void accept() override;

 private:
  const UiContext& context_;
  // Owned by the Qt parent.
  QComboBox* codePage_;
  QPlainTextEdit* mappings_;
  QLineEdit* editor_;
  QLabel* complaint_;
};

}  // namespace velkor::ui
