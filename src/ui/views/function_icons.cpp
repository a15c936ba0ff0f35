#include "ui/views/function_icons.h"

#include <QPainter>
#include <array>

#include "ui/drawn_icon.h"

namespace velkor::ui {

namespace {

constexpr int kCell = 16;

// On the maximum chain, adjusted or library, recursive, unknown, defined.
constexpr std::array<QRgb, 5> kColors = {0xFFE02020, 0xFF20D0E0, 0xFF30B030, 0xFFFFE020,
                                         0xFFFFFFFF};

// Of square cells side by side, the one that holds the box.
QIcon SquareIcon(int kind, int cells, int cell) {
  const QRgb color = kColors.at(static_cast<size_t>(kind));
  const auto draw = [color, cell](QPainter& painter) {
    painter.setPen(QPen(QColor(64, 64, 64), 1));
    painter.setBrush(QColor::fromRgb(color));
    painter.drawRect(QRectF(kCell * cell + 3, 3, kCell - 6, kCell - 6));
  };
  return DrawnIcon(draw, QSize(kCell * cells, kCell));
}

}  // namespace

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
