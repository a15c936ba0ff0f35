#include "ui/dialogs/function_lists_dialog.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>

#include "core/adjustments.h"
#include "ui/commands/commands.h"
#include "ui/dialogs/dialog_controls.h"
#include "ui/dialogs/function_list_box.h"
#include "ui/help/help_location.h"

namespace velkor::ui {

namespace {

// Items of the dialog by the keys of their texts.
constexpr uint32_t kListsDialog = 400;
constexpr uint32_t kClose = 1;
constexpr uint32_t kAdjustSize = 1001;
constexpr uint32_t kHelpOfLists = 57670;

constexpr int kAskAgainMilliseconds = 50;

constexpr size_t kUnknown = 0;
constexpr size_t kAdjusted = 1;
constexpr size_t kLibrary = 2;

using Rule = bool (*)(const StkFunction&);
constexpr std::array<Rule, 3> kRules = {IsSizeUnknown, IsAdjusted, IsSystemLibrary};
constexpr std::array<uint32_t, 3> kLabels = {2001, 2002, 2003};

// In one walk: no function keeps two rules.
std::array<StkFunctionList, kRules.size()> ByRule(const StkFunctionTable& functions) {
  std::array<StkFunctionList, kRules.size()> lists;
  for (StkFunction* function : functions.Functions()) {
    for (size_t i = 0; i < kRules.size(); ++i) {
      if (kRules[i](*function)) {
        lists[i].push_back(function);
        break;
      }
    }
  }
  return lists;
}

}  // namespace

FunctionListsDialog::FunctionListsDialog(const UiContext& context, FrameOperations& frame,
                                         std::function<void(int topic)> showHelp, QWidget* parent)
    : QDialog(parent),
      context_(context),
      frame_(frame),
      showHelp_(std::move(showHelp)),
      close_(new DialogButton(Text(kClose), this)),
      adjust_(new DialogButton(Text(kAdjustSize), this)),
      help_(new DialogButton(Text(kHelpOfLists), this)) {
  setWindowTitle(Text(0));
  for (FunctionListBox*& list : lists_) {
    list = new FunctionListBox(context.host.codePage, this);
  }
  Arrange();
  SetTabOrder();
  Connect();
  Fill();
  lists_[kUnknown]->setFocus();
}

QString FunctionListsDialog::Text(uint32_t item) const {
  return context_.Text(kDialogTextKey * kListsDialog + item);
}

void FunctionListsDialog::Arrange() {
  auto* buttons = new QVBoxLayout;
  for (QPushButton* button : {close_, adjust_, help_}) {
    buttons->addWidget(button);
  }
  buttons->addStretch();
  close_->setDefault(true);

  auto* layout = new QGridLayout(this);
  AddLabelled(*layout, kUnknown, 0, 0, 3);
  AddLabelled(*layout, kAdjusted, 0, 1, 1);
  AddLabelled(*layout, kLibrary, 2, 1, 1);
  layout->addLayout(buttons, 1, 2, 3, 1);
  for (const int stretching : {0, 1}) {
    layout->setColumnStretch(stretching, 1);
    layout->setRowStretch(2 * stretching + 1, 1);
  }
}

void FunctionListsDialog::AddLabelled(QGridLayout& layout, size_t list, int row, int column,
                                      int rows) {
  auto* label = new QLabel(Text(kLabels[list]), this);
  label->setBuddy(lists_[list]);
  layout.addWidget(label, row, column);
  layout.addWidget(lists_[list], row + 1, column, rows, 1);
}

void FunctionListsDialog::SetTabOrder() {
  QWidget* const order[] = {lists_[kUnknown], lists_[kAdjusted], lists_[kLibrary],
                            close_,           adjust_,           help_};
  for (size_t i = 1; i < std::size(order); ++i) {
    setTabOrder(order[i - 1], order[i]);
  }
}

void FunctionListsDialog::Connect() {
  for (FunctionListBox* list : lists_) {
    connect(list, &FunctionListBox::GotFocus, this, [this, list] { SetCurrentList(list); });
    connect(list, &FunctionListBox::SelectionChanged, this, [this, list] { SetCurrentList(list); });
    connect(list, &QAbstractItemView::doubleClicked, this, [this] { AdjustSize(); });
    for (const Qt::Key enter : {Qt::Key_Return, Qt::Key_Enter}) {
      auto* shortcut = new QShortcut(enter, list);
      shortcut->setContext(Qt::WidgetShortcut);
      connect(shortcut, &QShortcut::activated, this,
              [this] { selectedFunction_ == nullptr ? accept() : AdjustSize(); });
    }
  }
  askAgain_.setInterval(kAskAgainMilliseconds);
  askAgain_.setSingleShot(true);
  connect(&askAgain_, &QTimer::timeout, this, [this] { UpdateSelectedFunction(); });
  connect(close_, &QPushButton::clicked, this, [this] { accept(); });
  connect(adjust_, &QPushButton::clicked, this, [this] { AdjustSize(); });
  connect(help_, &QPushButton::clicked, this, [this] {
    showHelp_(kFunctionListsHelp);
    FocusCurrentList();
  });
  connect(new QShortcut(Qt::Key_F1, this), &QShortcut::activated, this,
          [this] { showHelp_(kFunctionListsHelp); });
}

void FunctionListsDialog::Fill() {
  auto functions = ByRule(*context_.document.FunctionTable());
  for (size_t i = 0; i < lists_.size(); ++i) {
    lists_[i]->SetFunctionsByName(std::move(functions[i]));
  }
  UpdateSelectedFunction();
}

void FunctionListsDialog::SetCurrentList(FunctionListBox* list) {
  currentList_ = list;
  for (FunctionListBox* other : lists_) {
    other->ShowSelectionAlways(other == list);
  }
  UpdateSelectedFunction();
}

void FunctionListsDialog::UpdateSelectedFunction() {
  selectedFunction_ = currentList_ == nullptr ? nullptr : currentList_->SelectedFunction();
  const bool canAdjust = context_.document.CanChangeAnalysis();
  adjust_->setEnabled(selectedFunction_ != nullptr && canAdjust);
  if (!canAdjust) {
    askAgain_.start();
  }
}

void FunctionListsDialog::AdjustSize() {
  if (selectedFunction_ == nullptr) {
    return;
  }
  if (frame_.AdjustStackSize(*selectedFunction_)) {
    Fill();
  }
  FocusCurrentList();
}

void FunctionListsDialog::FocusCurrentList() {
  if (currentList_ != nullptr) {
    currentList_->setFocus();
  }
}

}  // namespace velkor::ui
