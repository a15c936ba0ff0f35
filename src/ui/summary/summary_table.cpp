#include "ui/summary/summary_table.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QTimer>
#include <algorithm>

#include "ui/summary/summary_marks.h"
#include "ui/text_colors.h"

namespace velkor::ui {

namespace {

constexpr int kNarrowestBar = 24;
constexpr int kBarGap = 4;

// Links are underlined; a budget is a bar before its text.
class SummaryDelegate : public QStyledItemDelegate {
 public:
  SummaryDelegate(const SummaryModel& model, const int& barWidth, QObject* parent)
      : QStyledItemDelegate(parent), model_(model), barWidth_(barWidth) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    const QVariant budget = index.data(SummaryModel::kBudgetRole);
    if (!budget.isValid()) {
      QStyledItemDelegate::paint(painter, option, index);
      return;
    }
    QStyleOptionViewItem bare = option;
    initStyleOption(&bare, index);
    bare.text.clear();
    const QStyle& style = *bare.widget->style();
    style.drawControl(QStyle::CE_ItemViewItem, &bare, painter, bare.widget);
    const int height = std::min(option.fontMetrics.height() - 2, option.rect.height() - 4);
    const QRect bar(option.rect.left() + kBarGap, option.rect.center().y() - height / 2, barWidth_,
                    height);
    PaintBudget(*painter, bar, budget.value<StackBudget>(), option.palette);
    QStyleOptionViewItem text = option;
    text.rect.setLeft(bar.right() + kBarGap);
    QStyledItemDelegate::paint(painter, text, index);
  }

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    // All rows are as high as the first one, which has no mark.
    size.setHeight(std::max(size.height(), option.decorationSize.height() + 2));
    if (index.data(SummaryModel::kBudgetRole).isValid()) {
      size.rwidth() += barWidth_ + 2 * kBarGap;
    }
    return size;
  }

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    const SummaryRow* row = model_.RowOf(index);
    if (index.column() == 0 && row && row->function) {
      option->font.setUnderline(true);
      option->palette.setColor(QPalette::Text, LinkText(option->palette));
    }
  }

 private:
  const SummaryModel& model_;
  const int& barWidth_;  // the table's
};

}  // namespace

SummaryTable::SummaryTable(std::array<QString, SummaryModel::kColumnCount> headers, Follow follow,
                           QWidget* parent)
    : QTreeView(parent), model_(new SummaryModel(std::move(headers))), follow_(std::move(follow)) {
  model_->setParent(this);
  setModel(model_);
  setItemDelegate(new SummaryDelegate(*model_, barWidth_, this));
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  setEditTriggers(NoEditTriggers);
  setMouseTracking(true);
  setIndentation(14);
  header()->setStretchLastSection(true);
  connect(header(), &QHeaderView::sectionResized, this, [this](int column) {
    // The last one takes what the others leave.
    widthsFollow_ = widthsFollow_ && (fitting_ || column + 1 == SummaryModel::kColumnCount);
  });
}

void SummaryTable::SetGroups(std::vector<SummaryGroup> groups) {
  const QModelIndex current = currentIndex();
  const QModelIndex groupOfCurrent = current.parent();
  model_->SetGroups(std::move(groups));
  for (int group = 0; group < model_->rowCount(); ++group) {
    const QModelIndex title = model_->index(group, 0);
    setFirstColumnSpanned(group, {}, true);
    setExpanded(title, true);
    for (int row = 0; row < model_->rowCount(title); ++row) {
      if (model_->IsSpanned(model_->index(row, 0, title))) {
        setFirstColumnSpanned(row, title, true);
      }
    }
  }
  if (groupOfCurrent.isValid()) {
    SelectInGroup(groupOfCurrent.row(), current.row());
  }
  secondWidth_ = SecondWidth();
  FitColumns();
}

// What has come to the place of the row before, so that one after the other can be taken.
void SummaryTable::SelectInGroup(int group, int row) {
  const QModelIndex title = model_->index(group, 0);
  const int last = title.isValid() ? model_->rowCount(title) - 1 : -1;
  setCurrentIndex(model_->index(std::min(row, last), 0, title));
}

int SummaryTable::SecondWidth() const {
  const QFontMetrics metrics = fontMetrics();
  int widest = header()->sectionSizeHint(1);
  for (int group = 0; group < model_->rowCount(); ++group) {
    const QModelIndex title = model_->index(group, 0);
    for (int row = 0; row < model_->rowCount(title); ++row) {
      const QModelIndex cell = model_->index(row, 1, title);
      const int bar = cell.data(SummaryModel::kBudgetRole).isValid() ? kWidestBar + 2 * kBarGap : 0;
      widest = std::max(widest, bar + metrics.horizontalAdvance(cell.data().toString()) +
                                    2 * metrics.averageCharWidth());
    }
  }
  return widest;
}

std::optional<uint32_t> SummaryTable::CurrentFunction() const {
  const SummaryRow* row = model_->RowOf(currentIndex());
  return row ? row->function : std::nullopt;
}

const SummaryRow* SummaryTable::LinkAt(const QModelIndex& index) const {
  const SummaryRow* row = index.column() == 0 ? model_->RowOf(index) : nullptr;
  return row && row->function ? row : nullptr;
}

void SummaryTable::mouseMoveEvent(QMouseEvent* event) {
  QTreeView::mouseMoveEvent(event);
  const bool onLink = LinkAt(indexAt(event->position().toPoint())) != nullptr;
  viewport()->setCursor(onLink ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

void SummaryTable::mouseReleaseEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->position().toPoint());
  const SummaryRow* row = event->button() == Qt::LeftButton ? LinkAt(index) : nullptr;
  const bool follows = row && index.siblingAtColumn(0) == currentIndex().siblingAtColumn(0);
  QTreeView::mouseReleaseEvent(event);
  if (follows) {
    follow_(SummaryRow(*row));
  }
}

void SummaryTable::keyPressEvent(QKeyEvent* event) {
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  const SummaryRow* row = isEnter ? LinkAt(currentIndex().siblingAtColumn(0)) : nullptr;
  if (row) {
    event->accept();
    follow_(SummaryRow(*row));
    return;
  }
  QTreeView::keyPressEvent(event);
}

void SummaryTable::resizeEvent(QResizeEvent* event) {
  QTreeView::resizeEvent(event);
  FitColumns();
}

// Once all parts of the table have the new font.
void SummaryTable::changeEvent(QEvent* event) {
  QTreeView::changeEvent(event);
  if (event->type() == QEvent::FontChange) {
    QTimer::singleShot(0, this, [this] {
      secondWidth_ = SecondWidth();
      FitColumns();
    });
  }
}

// The second as wide as its texts, for which its bars become narrower; the others share the rest.
void SummaryTable::FitColumns() {
  if (!widthsFollow_) {
    return;
  }
  fitting_ = true;
  const int second = std::min(secondWidth_, viewport()->width() * 2 / 5);
  barWidth_ = std::clamp(kWidestBar - (secondWidth_ - second), kNarrowestBar, kWidestBar);
  const int rest = std::max(0, viewport()->width() - second);
  header()->resizeSection(1, second);
  header()->resizeSection(0, rest / 2);
  fitting_ = false;
}

}  // namespace velkor::ui
