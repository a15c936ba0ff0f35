#include "ui/views/arrow_header.h"

#include <QPainter>
#include <QStyleOptionHeader>

#include "ui/views/function_icons.h"

namespace velkor::ui {

namespace {

constexpr int kArrowGap = 4;

}  // namespace

ArrowHeader::ArrowHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
  setHighlightSections(false);
}

void ArrowHeader::SetArrow(int section, bool descending) {
  arrowSection_ = section;
  descending_ = descending;
  viewport()->update();
}

QSize ArrowHeader::sectionSizeFromContents(int section) const {
  return QHeaderView::sectionSizeFromContents(section) + QSize(kArrowSize.width() + kArrowGap, 0);
}

void ArrowHeader::paintSection(QPainter* painter, const QRect& rect, int section) const {
  if (section != arrowSection_) {
    painter->save();
    QHeaderView::paintSection(painter, rect, section);
    painter->restore();
    return;
  }
  QStyleOptionHeaderV2 option;
  initStyleOption(&option);
  initStyleOptionForIndex(&option, section);
  option.rect = rect;
  painter->save();
  style()->drawControl(QStyle::CE_HeaderSection, &option, painter, this);
  QRect label = style()->subElementRect(QStyle::SE_HeaderLabel, &option, this);
  label.setRight(std::max(label.left(), label.right() - kArrowSize.width() - kArrowGap));
  const QString text = option.fontMetrics.elidedText(option.text, Qt::ElideRight, label.width());
  const QColor color = option.palette.color(QPalette::ButtonText);
  painter->setPen(color);
  const QRect shown = style()->itemTextRect(option.fontMetrics, label,
                                            static_cast<int>(option.textAlignment), true, text);
  painter->drawText(label, static_cast<int>(option.textAlignment) | Qt::TextSingleLine, text);
  QRect arrow(QPoint(0, 0), kArrowSize);
  arrow.moveLeft(std::min(shown.right(), label.right()) + kArrowGap);
  arrow.moveTop(label.center().y() - kArrowSize.height() / 2);
  PaintArrow(*painter, arrow, descending_, color);
  painter->restore();
}

}  // namespace velkor::ui
