#include "ui/views/fitted_columns.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <utility>

namespace velkor::ui {

namespace {

// Of a column that has yielded all it can, in average characters.
constexpr int kLeastCharacters = 12;

// That of the program: a table has another until it is shown.
double TextWidth() {
  return QFontMetricsF(QApplication::font()).horizontalAdvance("Function 0123456789");
}

}  // namespace

FittedColumns::FittedColumns(QAbstractItemView& view, QHeaderView& header, Column names,
                             std::vector<Column> yielding)
    : QObject(&header),
      view_(view),
      header_(header),
      names_(names),
      yielding_(std::move(yielding)),
      firstTextWidth_(TextWidth()),
      textWidth_(firstTextWidth_) {
  // The widest of all texts would take too long to find: of those that are seen.
  header_.setResizeContentsPrecision(0);
  header_.installEventFilter(this);
  view_.viewport()->installEventFilter(this);
  connect(&header_, &QHeaderView::sectionResized, this, [this](int, int before, int after) {
    const bool hidesOrShows = before == 0 || after == 0;
    isOwn_ = isOwn_ || !(fitting_ || hidesOrShows);
  });
  connect(&header_, &QHeaderView::sectionMoved, this, [this] { isOwn_ = true; });
  Fit();
}

QByteArray FittedColumns::Own() const {
  return isOwn_ ? header_.saveState() : QByteArray();
}

void FittedColumns::SetOwn(const QByteArray& columns) {
  isOwn_ = !columns.isEmpty() && header_.restoreState(columns);
  Fit();
}

// In a table that scrolls sideways anyway names take up to half of it.
void FittedColumns::Fit() {
  if (isOwn_) {
    return;
  }
  fitting_ = true;
  const int all = view_.viewport()->width();
  const int leastText = view_.fontMetrics().averageCharWidth() * kLeastCharacters;
  const int wantedNames = Wanted(names_);
  std::vector<int> widths;
  widths.reserve(yielding_.size());
  int missing = OfOthers() + wantedNames - all;
  for (const Column& column : yielding_) {
    widths.push_back(Wanted(column));
    missing += widths.back();
  }
  int free = all - OfOthers();
  for (size_t i = 0; i < widths.size(); ++i) {
    const int least = std::max(leastText, header_.sectionSizeHint(yielding_[i].index));
    const int given = std::clamp(missing, 0, std::max(0, widths[i] - least));
    missing -= given;
    free -= widths[i] - given;
    SetWidth(yielding_[i], widths[i] - given);
  }
  SetWidth(names_, std::max(std::min(wantedNames, std::max(Usual(names_), all / 2)), free));
  fitting_ = false;
}

int FittedColumns::Usual(const Column& column) const {
  return static_cast<int>(std::lround(column.usual * textWidth_ / firstTextWidth_));
}

int FittedColumns::Wanted(const Column& column) const {
  if (header_.isSectionHidden(column.index)) {
    return 0;
  }
  const int content = column.byContent ? view_.sizeHintForColumn(column.index) : 0;
  return std::max(Usual(column), content);
}

int FittedColumns::OfOthers() const {
  int width = header_.length() - header_.sectionSize(names_.index);
  for (const Column& column : yielding_) {
    width -= header_.sectionSize(column.index);
  }
  return width;
}

void FittedColumns::SetWidth(const Column& column, int width) {
  if (!header_.isSectionHidden(column.index)) {
    header_.resizeSection(column.index, width);
  }
}

bool FittedColumns::eventFilter(QObject* watched, QEvent* event) {
  if (watched == &header_ && event->type() == QEvent::FontChange) {
    Zoom();
    // Once all parts of the table have the new font.
    QTimer::singleShot(0, this, [this] { ShowHeaders(); });
  } else if (watched != &header_ && event->type() == QEvent::Resize) {
    Fit();
  }
  return QObject::eventFilter(watched, event);
}

void FittedColumns::Zoom() {
  const double before = std::exchange(textWidth_, TextWidth());
  fitting_ = true;
  for (int column = 0; column < header_.count(); ++column) {
    const auto width =
        static_cast<int>(std::lround(header_.sectionSize(column) * textWidth_ / before));
    if (!header_.isSectionHidden(column)) {
      header_.resizeSection(column, width);
    }
  }
  fitting_ = false;
}

void FittedColumns::ShowHeaders() {
  if (isOwn_) {
    return;
  }
  fitting_ = true;
  for (int column = 0; column < header_.count(); ++column) {
    if (!header_.isSectionHidden(column)) {
      header_.resizeSection(column,
                            std::max(header_.sectionSize(column), header_.sectionSizeHint(column)));
    }
  }
  fitting_ = false;
  Fit();
}

}  // namespace velkor::ui
