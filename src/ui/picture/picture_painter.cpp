#include "ui/picture/picture_painter.h"

#include <algorithm>

#include "ui/shown_text.h"

namespace velkor::ui {

using reports::IcicleBox;
using reports::IcicleKind;

namespace {

constexpr double kBoxGap = 4;

}  // namespace

PicturePainter::PicturePainter(QPainter& painter, const reports::IcicleLayout& layout,
                               const PictureColors& colors, QSizeF area, QPointF scroll)
    : painter_(painter),
      layout_(layout),
      colors_(colors),
      area_(area),
      scroll_(scroll),
      font_(painter.font()) {}

void PicturePainter::Paint(PicturePlace current, std::optional<PicturePlace> hovered,
                           bool hasFocus) {
  painter_.fillRect(QRectF(QPointF(), area_), colors_.ground);
  PaintAxis();
  const double headHeight = layout_.Measures().headHeight;
  painter_.save();
  painter_.setClipRect(QRectF(layout_.Measures().axisWidth, headHeight - 2, area_.width(),
                              std::max(0.0, area_.height() - headHeight + 2)));
  for (size_t column = 0; column < layout_.Shown().columns.size(); ++column) {
    PaintColumn(column);
  }
  if (hovered) {
    PaintFrame(*hovered, 1.5);
  }
  PaintFrame(current, hasFocus ? 3 : 2);
  painter_.restore();
}

void PicturePainter::PaintAxis() {
  const double axis = layout_.Measures().axisWidth;
  const double head = layout_.Measures().headHeight;
  const double lineHeight = QFontMetricsF(font_).height();
  for (const reports::IcicleTick& tick : layout_.Ticks()) {
    const double y = tick.top - scroll_.y();
    if (y < head || y > area_.height()) {
      continue;
    }
    painter_.setPen(QPen(colors_.grid, 1));
    painter_.drawLine(QPointF(axis - kBoxGap, y), QPointF(area_.width(), y));
    painter_.setPen(colors_.quiet);
    painter_.drawText(QRectF(0, y - lineHeight / 2, axis - 2 * kBoxGap, lineHeight),
                      Qt::AlignRight | Qt::AlignVCenter, QString::number(tick.bytes));
  }
}

QRectF PicturePainter::RectOf(size_t column, const IcicleBox& box) const {
  const double left = layout_.LeftOf(column) - scroll_.x() + kBoxGap;
  const double width = layout_.Measures().columnWidth - 2 * kBoxGap;
  // A box that is far larger than the area is drawn as far as it can be seen: painters lose their
  // way in large numbers.
  const double margin = 100;
  const double top = std::max(box.top - scroll_.y(), -margin);
  const double bottom = std::min(box.top + box.height - scroll_.y(), area_.height() + margin);
  return {QPointF(left, top), QPointF(left + width, std::max(top, bottom))};
}

QRectF PicturePainter::HeadOf(size_t column) const {
  return {layout_.LeftOf(column) - scroll_.x() + kBoxGap, 0,
          layout_.Measures().columnWidth - 2 * kBoxGap, layout_.Measures().headHeight - 2};
}

void PicturePainter::PaintColumn(size_t column) {
  const QRectF head = HeadOf(column);
  if (head.right() < layout_.Measures().axisWidth || head.left() > area_.width()) {
    return;
  }
  const double top = scroll_.y() + layout_.Measures().headHeight;
  for (const IcicleBox& box :
       layout_.BoxesBetween(column, top, scroll_.y() + area_.height())) {
    PaintBox(column, box);
  }
  if (const std::optional<double> line = layout_.StackLine(column)) {
    painter_.setPen(QPen(colors_.stackLine, 2.5, Qt::DashLine));
    const double y = *line - scroll_.y();
    painter_.drawLine(QPointF(head.left() - kBoxGap, y), QPointF(head.right() + kBoxGap, y));
  }
  PaintHead(column);
}

void PicturePainter::PaintBox(size_t column, const IcicleBox& box) {
  const QRectF rect = RectOf(column, box);
  painter_.fillRect(rect, colors_.Fill(box.kind));
  const QBrush pattern = colors_.Pattern(box.kind);
  if (pattern.style() != Qt::NoBrush) {
    painter_.fillRect(rect, pattern);
  }
  painter_.setPen(QPen(colors_.frame, 1, colors_.Frame(box.kind)));
  painter_.setBrush(Qt::NoBrush);
  painter_.drawRect(rect);
  if (box.kind == IcicleKind::kRecursion) {
    const QRectF inner = rect.adjusted(2.5, 0, -2.5, 0);
    painter_.drawLine(inner.topLeft(), inner.bottomLeft());
    painter_.drawLine(inner.topRight(), inner.bottomRight());
  }
  PaintLines(column, box, rect);
}

void PicturePainter::PaintLines(size_t column, const IcicleBox& box, const QRectF& rect) {
  const QFontMetricsF metrics(font_);
  // The words of a large box stay in sight while it is scrolled.
  double top = std::max(rect.top(), layout_.Measures().headHeight);
  if (rect.bottom() - top < metrics.height() - 1) {
    return;
  }
  painter_.setPen(colors_.ink);
  const double width = rect.width() - 3 * kBoxGap;
  for (const std::string& line : layout_.Lines(column, box)) {
    if (top + metrics.height() - 1 > rect.bottom()) {
      break;
    }
    painter_.drawText(QRectF(rect.left() + 1.5 * kBoxGap, top, width, metrics.height()),
                      Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                      metrics.elidedText(FromUtf8(line), Qt::ElideRight, width));
    top += metrics.height();
  }
}

void PicturePainter::PaintHead(size_t column) {
  painter_.save();
  const QRectF head = HeadOf(column);
  painter_.setClipRect(QRectF(layout_.Measures().axisWidth, 0, area_.width(), head.bottom()));
  QFont bold = font_;
  bold.setBold(true);
  const QFontMetricsF metrics(bold);
  painter_.setPen(colors_.ink);
  painter_.setFont(bold);
  painter_.drawText(head, Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine,
                    metrics.elidedText(FromUtf8(layout_.ShortName(column)), Qt::ElideRight,
                                       head.width()));
  painter_.setFont(font_);
  painter_.drawText(head, Qt::AlignLeft | Qt::AlignBottom | Qt::TextSingleLine,
                    QFontMetricsF(font_).elidedText(FromUtf8(layout_.Known(column)),
                                                    Qt::ElideRight, head.width()));
  painter_.restore();
}

void PicturePainter::PaintFrame(PicturePlace place, double width) {
  if (const std::optional<IcicleBox> box = BoxAt(layout_, place)) {
    painter_.setPen(QPen(colors_.ink, width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter_.setBrush(Qt::NoBrush);
    painter_.drawRect(RectOf(place.column, *box));
  }
}

}  // namespace velkor::ui
