#include "ui/views/name_delegate.h"

#include <QApplication>
#include <QPainter>

#include "ui/pale_color.h"

namespace velkor::ui {

namespace {

int Gap(const QFontMetrics& metrics) {
  return 2 * metrics.averageCharWidth();
}

}  // namespace

void NameDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  QStyledItemDelegate::paint(painter, option, index);
  const QString behind = index.data(kBehindNameRole).toString();
  if (behind.isEmpty()) {
    return;
  }
  QStyleOptionViewItem item = option;
  initStyleOption(&item, index);
  const QStyle& style = item.widget ? *item.widget->style() : *QApplication::style();
  QRect rest = style.subElementRect(QStyle::SE_ItemViewItemText, &item, item.widget);
  rest.setRight(option.rect.right());
  const int name = item.fontMetrics.horizontalAdvance(item.text) + Gap(item.fontMetrics);
  rest.adjust(name + style.pixelMetric(QStyle::PM_FocusFrameHMargin, &item, item.widget), 0, 0, 0);
  const QPalette::ColorGroup group = !(item.state & QStyle::State_Enabled)  ? QPalette::Disabled
                                     : !(item.state & QStyle::State_Active) ? QPalette::Inactive
                                                                            : QPalette::Active;
  const bool selected = (item.state & QStyle::State_Selected) != 0;
  painter->save();
  painter->setFont(item.font);
  painter->setPen(selected ? item.palette.color(group, QPalette::HighlightedText)
                           : PaleText(item.palette, group));
  painter->drawText(rest, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, behind);
  painter->restore();
}

QSize NameDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  QSize size = QStyledItemDelegate::sizeHint(option, index);
  const QString behind = index.data(kBehindNameRole).toString();
  if (!behind.isEmpty()) {
    size.rwidth() += Gap(option.fontMetrics) + option.fontMetrics.horizontalAdvance(behind);
  }
  return size;
}

}  // namespace velkor::ui
