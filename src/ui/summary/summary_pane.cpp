#include "ui/summary/summary_pane.h"

#include <QVBoxLayout>
#include <utility>

#include "ui/commands/function_commands.h"
#include "ui/pane_ring.h"
#include "ui/summary/summary_texts.h"

namespace velkor::ui {

namespace {

std::array<QString, SummaryModel::kColumnCount> HeadersFrom(const UiContext& context,
                                                            uint32_t first) {
  return {context.Text(first), context.Text(first + 1), context.Text(first + 2)};
}

}  // namespace

SummaryPane::SummaryPane(UiContext& context, AnswerKeeper& keeper, FrameOperations& frame,
                         std::function<void(StkFunction&)> show, QWidget* parent)
    : QWidget(parent),
      context_(context),
      keeper_(keeper),
      frame_(frame),
      rows_(context),
      lead_(new QLabel(this)),
      tables_(new QSplitter(Qt::Horizontal, this)),
      needs_(new SummaryTable(HeadersFrom(context, kNeedsHeaders),
                              [this, show = std::move(show)](const SummaryRow& row) {
                                if (StkFunction* function = FunctionOf(row.function)) {
                                  show(*function);
                                }
                              })),
      wanted_(new SummaryTable(HeadersFrom(context, kWantedHeaders), [this](const SummaryRow& row) {
        if (StkFunction* function = FunctionOf(row.function)) {
          frame_.AdjustStackSize(*function);
        }
      })) {
  setAccessibleName(context.Text(kSummaryName));
  needs_->setAccessibleName(context.Text(kNeedsName));
  wanted_->setAccessibleName(context.Text(kWantedName));
  setFocusProxy(needs_);
  lead_->setTextFormat(Qt::PlainText);
  lead_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  lead_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  QFont font = lead_->font();
  font.setBold(true);
  lead_->setFont(font);
  tables_->addWidget(needs_);
  tables_->addWidget(wanted_);
  tables_->setChildrenCollapsible(false);
  tables_->setObjectName("summaryTables");
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 0);
  layout->setSpacing(4);
  layout->addWidget(lead_);
  layout->addWidget(tables_, 1);
  for (SummaryTable* table : {needs_, wanted_}) {
    table->setMinimumHeight(kLeastViewHeight);
    connect(table->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this] { frame_.UpdateCommands(); });
  }
  Take(nullptr);
  keeper_.AddListener([this](const AnswerKeeper::Answer& answer) { Take(answer); });
}

void SummaryPane::Take(const AnswerKeeper::Answer& answer) {
  lead_->setText(rows_.Lead(answer.get(), keeper_.IsWorking()));
  lead_->setToolTip(lead_->text());
  needs_->SetGroups(answer ? rows_.Needs(*answer) : std::vector<SummaryGroup>());
  wanted_->SetGroups(answer ? rows_.Wanted(*answer) : std::vector<SummaryGroup>());
}

std::optional<CommandState> SummaryPane::StateOf(Command command) {
  return FunctionCommandState(command, CurrentFunction(), context_.document);
}

void SummaryPane::Execute(Command command) {
  ExecuteFunctionCommand(command, CurrentFunction(), frame_);
}

StkFunction* SummaryPane::CurrentFunction() const {
  const SummaryTable& table = wanted_->hasFocus() ? *wanted_ : *needs_;
  return FunctionOf(table.CurrentFunction());
}

StkFunction* SummaryPane::FunctionOf(std::optional<uint32_t> index) const {
  const StkFunctionTable* functions = context_.document.FunctionTable();
  return functions && index && *index < functions->Count() ? functions->Functions()[*index]
                                                           : nullptr;
}

}  // namespace velkor::ui
