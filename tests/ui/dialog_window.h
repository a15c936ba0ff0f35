#pragma once

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <string>
#include <vector>

#include "analysis_window.h"
#include "ui/function_rows.h"
#include "ui/language.h"

namespace velkor::testing {

// A document with one small project, and dialogs over it with the English texts.
class DialogWindow : public AnalysisWindow {
 protected:
  explicit DialogWindow(const std::vector<std::string>& functions) : AnalysisWindow(functions) {}

  // Each row on a line, "<" where selected.
  static std::string RowsOf(const FunctionRows& rows) {
    std::string text;
    for (int row = 0; row < rows.model()->rowCount(); ++row) {
      const QModelIndex index = rows.model()->index(row, 0);
      text += index.data().toString().toStdString();
      text += rows.selectionModel()->isSelected(index) ? " <\n" : "\n";
    }
    return text;
  }
  static void Select(FunctionRows& rows, int row) {
    const QPoint point = rows.visualRect(rows.model()->index(row, 0)).center();
    QTest::mouseClick(rows.viewport(), Qt::LeftButton, Qt::NoModifier, {10, point.y()});
  }
  // By its text without mnemonic.
  static QPushButton& Button(QWidget& dialog, const QString& text) {
    for (QPushButton* button : dialog.findChildren<QPushButton*>()) {
      if (button->text().remove('&') == text) {
        return *button;
      }
    }
    ADD_FAILURE() << text.toStdString();
    return *dialog.findChild<QPushButton*>();
  }
  static void Show(QWidget& dialog) {
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
  }

  StkMessages windowTexts = WindowMessages(host.codePage, Language::kEnglish);
  UiContext dialogContext{host.host, windowTexts, recorder.reporter, document};
  std::vector<int> helpTopics;
  std::function<void(int)> showHelp = [this](int topic) { helpTopics.push_back(topic); };
};

}  // namespace velkor::testing
