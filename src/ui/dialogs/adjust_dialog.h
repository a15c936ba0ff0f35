#pragma once

#include <QDialog>
#include <functional>
#include <optional>

#include "document/adjustment_form.h"
#include "ui/ui_context.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace velkor::ui {

class FunctionListBox;

// States the adjustment of one function. Changes nothing in the analysis: after exec() has
// answered Accepted, the caller applies what BuildAdjustment answers, or cancels the adjustment in
// force when that is none. User-interface thread; the analysis must not change meanwhile.
class AdjustStackSizeDialog : public QDialog {
  Q_OBJECT

 public:
  // The document must hold the function. showHelp is given the topic (kAdjustHelp).
  AdjustStackSizeDialog(const UiContext& context, const StkFunction& function,
                        std::function<void(int topic)> showHelp, QWidget* parent = nullptr);

  std::optional<StkAdjustment> BuildAdjustment() const { return form_.BuildAdjustment(); }

  // Refused, with a warning, while a field holds no usable number.
  void accept() override;

 private:
  enum class FocusedList { kNone, kCallees, kAll };

  void Fill(const StkFunction& function);
  void Arrange();
  QLayout* ArrangeFields();
  QLayout* ArrangeButtons();
  QWidget* ArrangeLists();
  void SetTabOrder();
  void Connect();
  QString Text(uint32_t item) const;
  QLabel* Label(uint32_t item, QWidget* buddy);
  void Focused(FocusedList list);
  void UpdateButtons();
  void UpdateRecursion();
  void EnableDepth(bool enabled);
  void Add();
  void Delete();
  void Reset();

  const UiContext& context_;
  std::function<void(int topic)> showHelp_;
  AdjustmentForm form_;
  FocusedList focusedList_ = FocusedList::kNone;
  StkFunction* actingFunction_ = nullptr;  // selected in the list that had the focus last

  // Owned by Qt as children.
  QLineEdit* name_;
  QLineEdit* frameSize_;
  QLineEdit* margin_;
  QLineEdit* depth_;
  FunctionListBox* callees_;  // the fixed callees, then the added ones
  FunctionListBox* all_;
  QPushButton* add_;
  QPushButton* delete_;
  QPushButton* ok_;
  QPushButton* cancel_;
  QPushButton* reset_;
  QPushButton* help_;
  QLabel* depthLabel_ = nullptr;
};

}  // namespace velkor::ui
