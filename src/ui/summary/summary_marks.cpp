#include "ui/summary/summary_marks.h"

#include <QPainterPath>
#include <algorithm>

#include "ui/drawn_icon.h"

namespace velkor::ui {

namespace {

constexpr QSize kMarkSize(16, 16);
constexpr QRgb kGreen = 0xFF1E7B34;
constexpr QRgb kAmber = 0xFFFFC83D;
constexpr QRgb kRed = 0xFFC62828;
constexpr QRgb kBlue = 0xFF2566B0;
constexpr QRgb kDark = 0xFF202020;
constexpr QRgb kLight = 0xFFFFFFFF;

QPen Line(QRgb color, qreal width) {
  return {QColor::fromRgb(color), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void DrawFine(QPainter& painter) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor::fromRgb(kGreen));
  painter.drawEllipse(QPointF(8, 8), 6.5, 6.5);
  painter.setPen(Line(kLight, 1.8));
  painter.drawPolyline(QPolygonF({{5, 8.3}, {7.2, 10.6}, {11.2, 5.8}}));
}

void DrawOpen(QPainter& painter) {
  painter.setPen(Line(kDark, 0.9));
  painter.setBrush(QColor::fromRgb(kAmber));
  painter.drawPolygon(QPolygonF({{8, 1.5}, {15, 14.2}, {1, 14.2}}));
  painter.setPen(Line(kDark, 1.4));
  painter.setBrush(Qt::NoBrush);
  QPainterPath mark(QPointF(6.4, 7.2));
  mark.cubicTo(6.5, 5, 9.7, 5, 9.6, 7.2);
  mark.cubicTo(9.5, 8.5, 8, 8.5, 8, 9.9);
  painter.drawPath(mark);
  painter.drawPoint(QPointF(8, 12.1));
}

void DrawBad(QPainter& painter) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor::fromRgb(kRed));
  painter.drawPolygon(QPolygonF(
      {{5.3, 1.5}, {10.7, 1.5}, {14.5, 5.3}, {14.5, 10.7}, {10.7, 14.5}, {5.3, 14.5}, {1.5, 10.7}, {1.5, 5.3}}));
  painter.setPen(Line(kLight, 2));
  painter.drawLine(QPointF(8, 4.4), QPointF(8, 8.6));
  painter.drawPoint(QPointF(8, 11.5));
}

void DrawNote(QPainter& painter) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor::fromRgb(kBlue));
  painter.drawRoundedRect(QRectF(2, 2, 12, 12), 2, 2);
  painter.setPen(Line(kLight, 1.8));
  painter.drawLine(QPointF(8, 7.4), QPointF(8, 11.4));
  painter.drawPoint(QPointF(8, 4.7));
}

}  // namespace

QIcon SummaryMarkIcon(SummaryMark mark) {
  switch (mark) {
    case SummaryMark::kFine:
      return DrawnIcon(DrawFine, kMarkSize);
    case SummaryMark::kOpen:
      return DrawnIcon(DrawOpen, kMarkSize);
    case SummaryMark::kBad:
      return DrawnIcon(DrawBad, kMarkSize);
    case SummaryMark::kNote:
      return DrawnIcon(DrawNote, kMarkSize);
    case SummaryMark::kNone:
      break;
  }
  return {};
}

void PaintBudget(QPainter& painter, const QRectF& area, const StackBudget& budget,
                 const QPalette& palette) {
  const auto whole = static_cast<double>(std::max({budget.need, budget.size, uint64_t{1}}));
  const auto at = [&](uint64_t bytes) {
    return area.left() + area.width() * static_cast<double>(bytes) / whole;
  };
  const auto part = [&](double left, double right) {
    return QRectF(QPointF(left, area.top()), QPointF(right, area.bottom()));
  };
  const double end = at(budget.size);
  const double need = at(budget.need);
  const QColor ink = palette.color(QPalette::Text);
  painter.save();
  painter.fillRect(part(area.left(), std::min(need, end)),
                   budget.need > budget.size ? QColor::fromRgb(kRed) : QColor::fromRgb(kBlue));
  if (need > end) {
    painter.fillRect(part(end, need), QBrush(QColor::fromRgb(kRed), Qt::DiagCrossPattern));
  } else if (!budget.bounded) {
    painter.fillRect(part(need, end), QBrush(ink, Qt::BDiagPattern));
  }
  painter.setPen(QPen(ink, 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(area);
  painter.setPen(QPen(ink, 2));
  painter.drawLine(QPointF(end, area.top() - 2), QPointF(end, area.bottom() + 2));
  painter.restore();
}

}  // namespace velkor::ui
