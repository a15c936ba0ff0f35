#include "ui/views/function_icons.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <array>

#include "ui/drawn_icon.h"
#include "ui/sign_colors.h"

namespace velkor::ui {

namespace {

constexpr int kCell = 16;

// On the maximum chain, adjusted or library, recursive, unknown, defined.
constexpr std::array<QRgb, 5> kColors = {0xFFE02020, 0xFF20D0E0, 0xFF30B030, 0xFFFFE020,
                                         0xFFFFFFFF};

// An arrow down.
void DrawMaximum(QPainter& painter) {
  painter.drawLine(QPointF(8, 5), QPointF(8, 11));
  painter.drawPolyline(QPolygonF({{5.6, 8.6}, {8, 11}, {10.4, 8.6}}));
}

void DrawPlus(QPainter& painter) {
  painter.drawLine(QPointF(8, 5), QPointF(8, 11));
  painter.drawLine(QPointF(5, 8), QPointF(11, 8));
}

// A ring that is not closed.
void DrawRing(QPainter& painter) {
  painter.drawArc(QRectF(5.2, 5.2, 5.6, 5.6), 60 * 16, 300 * 16);
}

void DrawQuestion(QPainter& painter) {
  QPainterPath mark(QPointF(6.2, 6.6));
  mark.cubicTo(6.4, 4.2, 9.9, 4.2, 9.8, 6.5);
  mark.cubicTo(9.7, 7.7, 8, 7.6, 8, 9.2);
  painter.drawPath(mark);
  painter.drawPoint(QPointF(8, 11.2));
}

void DrawNothing(QPainter&) {}

// What tells the kinds apart beside their colours.
using Sign = void (*)(QPainter&);
constexpr std::array<Sign, 5> kSigns = {DrawMaximum, DrawPlus, DrawRing, DrawQuestion, DrawNothing};

// Of square cells side by side, the one that holds the box.
QIcon SquareIcon(int kind, int cells, int cell) {
  const QColor color = KindColor(kind);
  const Sign sign = kSigns.at(static_cast<size_t>(kind));
  const auto draw = [color, sign, cell](QPainter& painter) {
    const QColor base = QGuiApplication::palette().color(QPalette::Base);
    painter.translate(kCell * cell, 0);
    painter.setPen(QPen(SignColorsOn(base).ink, 1));
    painter.setBrush(color);
    painter.drawRect(QRectF(2.5, 2.5, kCell - 5, kCell - 5));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(InkOn(color), 1.3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    sign(painter);
  };
  return DrawnIcon(draw, QSize(kCell * cells, kCell));
}

}  // namespace

QColor KindColor(int iconIndex) {
  return QColor::fromRgb(kColors.at(static_cast<size_t>(iconIndex)));
}

int IconIndex(const StkFunction& function, bool onMaximumChain) {
  if (onMaximumChain) {
    return 0;
  }
  switch (function.Kind()) {
    case FunctionKind::kSpecified:
      return 1;
    case FunctionKind::kRecursive:
      return 2;
    case FunctionKind::kUnknown:
      return 3;
    case FunctionKind::kDefined:
      break;
  }
  return 4;
}

QIcon TreeIcon(int iconIndex) {
  return SquareIcon(iconIndex, 1, 0);
}

QIcon ListIcon(int iconIndex) {
  const int cell = iconIndex >= kCalleeRow ? 1 : 0;
  return SquareIcon(iconIndex - cell * kCalleeRow, 2, cell);
}

void PaintArrow(QPainter& painter, const QRect& rect, bool descending, const QColor& color) {
  const QRectF area(rect);
  const qreal base = descending ? area.top() : area.bottom();
  const qreal tip = descending ? area.bottom() : area.top();
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  painter.drawPolygon(
      QPolygonF({{area.left(), base}, {area.right(), base}, {area.center().x(), tip}}));
  painter.restore();
}

}  // namespace velkor::ui
