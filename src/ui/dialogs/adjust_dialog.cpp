#include "ui/dialogs/adjust_dialog.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>

#include "core/function_text.h"
#include "ui/commands/commands.h"
#include "ui/dialogs/dialog_controls.h"
#include "ui/dialogs/function_list_box.h"
#include "ui/help/help_location.h"

namespace velkor::ui {

namespace {

// Items of the dialog by the keys of their texts.
constexpr uint32_t kAdjustDialog = 401;
constexpr uint32_t kOk = 1;
constexpr uint32_t kCancel = 2;
constexpr uint32_t kReset = 1007;
constexpr uint32_t kDepthLabel = 1012;
constexpr uint32_t kAdd = 1013;
constexpr uint32_t kDelete = 1014;
constexpr uint32_t kNameLabel = 2001;
constexpr uint32_t kFrameSizeLabel = 2002;
constexpr uint32_t kMarginLabel = 2003;
constexpr uint32_t kCalleeGroup = 2004;
constexpr uint32_t kCalleesLabel = 2005;
constexpr uint32_t kAllLabel = 2006;
constexpr uint32_t kHelpButton = 57670;

}  // namespace

AdjustStackSizeDialog::AdjustStackSizeDialog(const UiContext& context, const StkFunction& function,
                                             std::function<void(int topic)> showHelp,
                                             QWidget* parent)
    : QDialog(parent),
      context_(context),
      showHelp_(std::move(showHelp)),
      form_(*context.document.FunctionTable(), function),
      name_(new DialogField(this)),
      frameSize_(new DialogField(this)),
      margin_(new DialogField(this)),
      depth_(new DialogField(this)),
      callees_(new FunctionListBox(context.host.codePage, this)),
      all_(new FunctionListBox(context.host.codePage, this)),
      add_(new DialogButton(Text(kAdd), this)),
      delete_(new DialogButton(Text(kDelete), this)),
      ok_(new DialogButton(Text(kOk), this)),
      cancel_(new DialogButton(Text(kCancel), this)),
      reset_(new DialogButton(Text(kReset), this)),
      help_(new DialogButton(Text(kHelpButton), this)) {
  setWindowTitle(Text(0));
  Arrange();
  Fill(function);
  SetTabOrder();
  Connect();
  reset_->setEnabled(form_.CanReset());
  UpdateButtons();
  UpdateRecursion();
  margin_->setFocus();
  margin_->selectAll();
}

QString AdjustStackSizeDialog::Text(uint32_t item) const {
  return context_.Text(kDialogTextKey * kAdjustDialog + item);
}

void AdjustStackSizeDialog::Fill(const StkFunction& function) {
  name_->setText(context_.Decoded(FunctionDisplayName(function, context_.host.codePage)));
  name_->setCursorPosition(0);
  name_->setReadOnly(true);
  frameSize_->setText(context_.Decoded(FrameSizeText(function)));
  frameSize_->setReadOnly(true);
  margin_->setText(context_.Decoded(form_.MarginText()));
  depth_->setText(context_.Decoded(form_.DepthText()));
  StkFunctionList callees(form_.FixedCallees().begin(), form_.FixedCallees().end());
  callees.insert(callees.end(), form_.AddedCallees().begin(), form_.AddedCallees().end());
  callees_->SetFunctions(std::move(callees), form_.FixedCallees().size());
  all_->SetFunctionsByName(context_.document.FunctionTable()->Functions());
}

QLabel* AdjustStackSizeDialog::Label(uint32_t item, QWidget* buddy) {
  auto* label = new QLabel(Text(item), this);
  label->setBuddy(buddy);
  return label;
}

void AdjustStackSizeDialog::Arrange() {
  auto* layout = new QGridLayout(this);
  layout->addLayout(ArrangeFields(), 0, 0);
  layout->addLayout(ArrangeButtons(), 0, 1);
  layout->addWidget(ArrangeLists(), 1, 0, 1, 2);
  layout->setColumnStretch(0, 1);
  layout->setRowStretch(1, 1);
}

QLayout* AdjustStackSizeDialog::ArrangeFields() {
  auto* fields = new QGridLayout;
  depthLabel_ = Label(kDepthLabel, depth_);
  fields->addWidget(Label(kNameLabel, name_), 0, 0);
  fields->addWidget(name_, 0, 1);
  fields->addWidget(Label(kFrameSizeLabel, frameSize_), 1, 0);
  fields->addWidget(frameSize_, 1, 1);
  fields->addWidget(Label(kMarginLabel, margin_), 2, 0);
  fields->addWidget(margin_, 2, 1);
  fields->addWidget(depthLabel_, 3, 0);
  fields->addWidget(depth_, 3, 1);
  fields->setRowStretch(4, 1);
  return fields;
}

QLayout* AdjustStackSizeDialog::ArrangeButtons() {
  auto* buttons = new QVBoxLayout;
  for (QPushButton* button : {ok_, cancel_, reset_, help_}) {
    buttons->addWidget(button);
  }
  buttons->addStretch();
  ok_->setDefault(true);
  return buttons;
}

QWidget* AdjustStackSizeDialog::ArrangeLists() {
  auto* group = new QGroupBox(Text(kCalleeGroup), this);
  auto* layout = new QGridLayout(group);
  auto* buttons = new QVBoxLayout;
  buttons->addWidget(add_);
  buttons->addWidget(delete_);
  buttons->addStretch();
  layout->addWidget(Label(kCalleesLabel, callees_), 0, 0);
  layout->addWidget(callees_, 1, 0);
  layout->addWidget(Label(kAllLabel, all_), 0, 1);
  layout->addWidget(all_, 1, 1);
  layout->addLayout(buttons, 1, 2);
  layout->setColumnStretch(0, 1);
  layout->setColumnStretch(1, 1);
  return group;
}

void AdjustStackSizeDialog::SetTabOrder() {
  QWidget* const order[] = {name_, frameSize_, margin_, depth_,  callees_, all_,
                            add_,  delete_,    ok_,     cancel_, reset_,   help_};
  for (size_t i = 1; i < std::size(order); ++i) {
    setTabOrder(order[i - 1], order[i]);
  }
}

void AdjustStackSizeDialog::Connect() {
  connect(callees_, &FunctionListBox::GotFocus, this, [this] { Focused(FocusedList::kCallees); });
  connect(all_, &FunctionListBox::GotFocus, this, [this] { Focused(FocusedList::kAll); });
  connect(callees_, &FunctionListBox::SelectionChanged, this, [this] { UpdateButtons(); });
  connect(all_, &FunctionListBox::SelectionChanged, this, [this] { UpdateButtons(); });
  connect(add_, &QPushButton::clicked, this, [this] { Add(); });
  connect(delete_, &QPushButton::clicked, this, [this] { Delete(); });
  connect(reset_, &QPushButton::clicked, this, [this] { Reset(); });
  connect(ok_, &QPushButton::clicked, this, [this] { accept(); });
  connect(cancel_, &QPushButton::clicked, this, [this] { reject(); });
  connect(help_, &QPushButton::clicked, this, [this] { showHelp_(kAdjustHelp); });
  connect(new QShortcut(Qt::Key_F1, this), &QShortcut::activated, this,
          [this] { showHelp_(kAdjustHelp); });
}

void AdjustStackSizeDialog::Focused(FocusedList list) {
  focusedList_ = list;
  callees_->ShowSelectionAlways(list == FocusedList::kCallees);
  all_->ShowSelectionAlways(list == FocusedList::kAll);
  UpdateButtons();
}

void AdjustStackSizeDialog::UpdateButtons() {
  bool canAdd = false;
  bool canDelete = false;
  if (focusedList_ == FocusedList::kAll) {
    actingFunction_ = all_->SelectedFunction();
    canAdd = actingFunction_ != nullptr && form_.CanAdd(*actingFunction_);
  } else if (focusedList_ == FocusedList::kCallees) {
    actingFunction_ = callees_->SelectedFunction();
    canDelete = actingFunction_ != nullptr && form_.CanDelete(*actingFunction_);
  }
  add_->setEnabled(canAdd);
  delete_->setEnabled(canDelete);
}

void AdjustStackSizeDialog::UpdateRecursion() {
  EnableDepth(form_.RecursionEnabled());
}

void AdjustStackSizeDialog::EnableDepth(bool enabled) {
  depthLabel_->setEnabled(enabled);
  depth_->setEnabled(enabled);
}

void AdjustStackSizeDialog::Add() {
  if (actingFunction_ == nullptr) {
    return;
  }
  if (form_.IsFull()) {
    context_.reporter.ShowWarning(MessageKey::kW9460, {});
    return;
  }
  const int position = form_.Add(*actingFunction_);
  if (position >= 0) {
    callees_->Rows().InsertAdded(form_.FixedCallees().size() + static_cast<size_t>(position),
                                 *actingFunction_);
  }
  all_->setFocus();
  Focused(FocusedList::kAll);
  UpdateRecursion();
}

void AdjustStackSizeDialog::Delete() {
  if (actingFunction_ == nullptr) {
    return;
  }
  const int position = form_.Delete(*actingFunction_);
  if (position >= 0) {
    callees_->Rows().RemoveAdded(form_.FixedCallees().size() + static_cast<size_t>(position));
  }
  callees_->setFocus();
  Focused(FocusedList::kCallees);
  UpdateRecursion();
}

void AdjustStackSizeDialog::Reset() {
  form_.Reset();
  margin_->setText(context_.Decoded(form_.MarginText()));
  depth_->setText(context_.Decoded(form_.DepthText()));
  callees_->Rows().RemoveAllAdded();
  UpdateRecursion();
  reset_->setEnabled(form_.CanReset());
}

void AdjustStackSizeDialog::accept() {
  form_.SetMarginText(context_.Encoded(margin_->text()));
  form_.SetDepthText(context_.Encoded(depth_->text()));
  if (const std::optional<AdjustmentForm::Refusal> refusal = form_.Validate()) {
    ShowRefusal(*refusal, context_.reporter);
    QLineEdit* wrong = refusal->field == AdjustmentForm::Field::kMargin ? margin_ : depth_;
    if (wrong == depth_) {
      EnableDepth(true);  // else it could not be put right
    }
    wrong->setFocus();
    wrong->selectAll();
    return;
  }
  QDialog::accept();
}

}  // namespace velkor::ui
