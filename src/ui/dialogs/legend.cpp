#include "ui/dialogs/legend.h"

#include <QGridLayout>
#include <QLabel>
#include <utility>

#include "ui/dialogs/dialog_controls.h"
#include "ui/summary/summary_marks.h"
#include "ui/views/accessible_texts.h"
#include "ui/views/function_icons.h"

namespace velkor::ui {

namespace {

constexpr uint32_t kLegendTitle = kDialogTextKey * 503;
constexpr uint32_t kLegendClose = kLegendTitle + 1;
// The meanings of the marks, in their order.
constexpr uint32_t kFirstMeaning = kLegendTitle + 10;
constexpr const char16_t* kMarks[] = {u"f*", u"f&",       u"[f]",  u"file.c#f",
                                      u"?",  u"SIZEOVER", u"≥100", u"10 *3"};

// Those of the summary, with their meanings.
constexpr std::pair<SummaryMark, uint32_t> kSummaryMarks[] = {
    {SummaryMark::kFine, kLegendTitle + 20},
    {SummaryMark::kOpen, kLegendTitle + 21},
    {SummaryMark::kBad, kLegendTitle + 22},
    {SummaryMark::kNote, kLegendTitle + 23}};

void AddRow(QGridLayout& rows, QLabel* sign, const QString& meaning) {
  auto* text = new QLabel(meaning, rows.parentWidget());
  text->setTextFormat(Qt::PlainText);
  const int row = rows.rowCount();
  rows.addWidget(sign, row, 0, Qt::AlignHCenter);
  rows.addWidget(text, row, 1);
}

}  // namespace

Legend::Legend(const UiContext& context, QWidget* parent) : QDialog(parent) {
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(context.Text(kLegendTitle));
  auto* rows = new QGridLayout(this);
  const auto addIcon = [&](const QIcon& icon, const QString& meaning) {
    auto* sign = new QLabel(this);
    sign->setPixmap(icon.pixmap(kTreeIconSize, devicePixelRatioF()));
    sign->setAccessibleName(meaning);
    AddRow(*rows, sign, meaning);
  };
  const KindDescriptions kinds = KindsFrom(context);
  for (size_t kind = 0; kind < kinds.size(); ++kind) {
    addIcon(TreeIcon(static_cast<int>(kind)), kinds[kind]);
  }
  for (const auto& [mark, meaning] : kSummaryMarks) {
    addIcon(SummaryMarkIcon(mark), context.Text(meaning));
  }
  uint32_t meaning = kFirstMeaning;
  for (const char16_t* mark : kMarks) {
    auto* sign = new QLabel(QString::fromUtf16(mark), this);
    sign->setTextFormat(Qt::PlainText);
    AddRow(*rows, sign, context.Text(meaning++));
  }
  auto* close = new DialogButton(context.Text(kLegendClose), this);
  connect(close, &QPushButton::clicked, this, &QDialog::close);
  rows->addWidget(close, rows->rowCount(), 1, Qt::AlignRight);
  rows->setSizeConstraint(QLayout::SetFixedSize);
}

}  // namespace velkor::ui
