#include "ui/views/row_texts.h"

#include <algorithm>
#include <string>

#include "reports/csv_output.h"

namespace velkor::ui {

namespace {

constexpr size_t kRowsAtOnce = 256;
// Characters. A text that is not moved when it grows takes no long pause for that.
constexpr qsizetype kUsualRow = 96;

QString FieldOf(const QString& cell, RowTexts::Form form) {
  if (form == RowTexts::Form::kTabs) {
    return QString(cell).replace(u'\t', u' ');
  }
  return QString::fromStdString(reports::CsvField(cell.toStdString()));
}

}  // namespace

RowTexts::RowTexts(UiContext& context, std::vector<uint32_t> functions, Form form)
    : context_(context),
      functions_(std::move(functions)),
      form_(form),
      bounds_(context.document.Bounds()) {
  text_.reserve(static_cast<qsizetype>(functions_.size()) * kUsualRow);
  if (form_ == Form::kCsv) {
    Append(CellHeaders(context_));
  }
}

bool RowTexts::Step() {
  const StkFunctionList& all = context_.document.FunctionTable()->Functions();
  const size_t end = std::min(next_ + kRowsAtOnce, functions_.size());
  for (; next_ < end; ++next_) {
    CellTexts cells;
    for (size_t cell = 0; cell < cells.size(); ++cell) {
      cells[cell] = CellText(*all[functions_[next_]], static_cast<FunctionCell>(cell), bounds_,
                             context_.host.codePage);
    }
    Append(cells);
  }
  return next_ < functions_.size();
}

void RowTexts::Append(const CellTexts& cells) {
  for (size_t cell = 0; cell < cells.size(); ++cell) {
    if (cell > 0) {
      text_ += form_ == Form::kCsv ? u',' : u'\t';
    }
    text_ += FieldOf(cells[cell], form_);
  }
  text_ += u'\n';
}

}  // namespace velkor::ui
