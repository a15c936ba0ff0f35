#pragma once

#include <QDialog>
#include <QTimer>
#include <array>
#include <functional>

#include "ui/commands/frame_operations.h"
#include "ui/ui_context.h"

class QGridLayout;
class QPushButton;

namespace velkor::ui {

class FunctionListBox;

// Shows which functions the analysis cannot settle by itself, which the user has adjusted, and
// which take their size from a system library table, and lets each be adjusted. Changes nothing by
// itself. User-interface thread; meanwhile the analysis changes only by AdjustStackSize.
class FunctionListsDialog : public QDialog {
  Q_OBJECT

 public:
  // The document must have functions. showHelp is given the topic (kFunctionListsHelp).
  FunctionListsDialog(const UiContext& context, FrameOperations& frame,
                      std::function<void(int topic)> showHelp, QWidget* parent = nullptr);

 private:
  void Arrange();
  void AddLabelled(QGridLayout& layout, size_t list, int row, int column, int rows);
  void SetTabOrder();
  void Connect();
  QString Text(uint32_t item) const;
  void Fill();
  void SetCurrentList(FunctionListBox* list);
  void UpdateSelectedFunction();
  void AdjustSize();
  void FocusCurrentList();

  const UiContext& context_;
  FrameOperations& frame_;
  std::function<void(int topic)> showHelp_;
  // Owned by Qt as children.
  std::array<FunctionListBox*, 3> lists_;   // unknown, adjusted, system library
  FunctionListBox* currentList_ = nullptr;  // had the focus or changed its selection last
  StkFunction* selectedFunction_ = nullptr;
  QTimer askAgain_;  // runs while a job keeps the functions from being adjusted
  QPushButton* close_;
  QPushButton* adjust_;
  QPushButton* help_;
};

}  // namespace velkor::ui
