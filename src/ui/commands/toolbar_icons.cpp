#include "ui/commands/toolbar_icons.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

#include "ui/drawn_icon.h"
#include "ui/sign_colors.h"

namespace velkor::ui {

namespace {

constexpr QColor kYellow(0xE8, 0xB0, 0x20);
constexpr QColor kCyan(0x20, 0xD0, 0xE0);

using Drawing = void (*)(QPainter&);

SignColors Colors() {
  return SignColorsOn(QGuiApplication::palette().color(QPalette::Button));
}

QPen PenOf(const QColor& color, double width) {
  return {color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void DrawBox(QPainter& painter, double x, double y, const QColor& color) {
  painter.setPen(PenOf(Colors().ink, 1));
  painter.setBrush(color);
  painter.drawRect(QRectF(x, y, 5, 4));
}

// Three boxes, each called by the one above, and an arrow out.
void DrawChain(QPainter& painter) {
  painter.setPen(PenOf(Colors().ink, 1));
  painter.drawPolyline(QPolygonF({{3.5, 5}, {3.5, 8.5}, {6, 8.5}}));
  painter.drawPolyline(QPolygonF({{8.5, 10}, {8.5, 13.5}, {11, 13.5}}));
  DrawBox(painter, 1, 1.5, Colors().error);
  DrawBox(painter, 6, 6.5, Colors().error);
  DrawBox(painter, 11, 11.5, Colors().error);
  painter.setPen(PenOf(Colors().accent, 1.8));
  painter.drawLine(QPointF(15.5, 1.5), QPointF(15.5, 7));
  painter.drawPolyline(QPolygonF({{12.8, 5}, {15.5, 8}, {18.2, 5}}));
}

// An arrow round in a circle.
void DrawRecalculate(QPainter& painter) {
  painter.setPen(PenOf(Colors().good, 2));
  painter.drawArc(QRectF(4.5, 3, 11, 11), 60 * 16, 290 * 16);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Colors().good);
  painter.drawPolygon(QPolygonF({{12, 0.5}, {17.5, 4.5}, {11.2, 7}}));
}

void DrawStop(QPainter& painter) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(Colors().error);
  painter.drawPolygon(QPolygonF(
      {{7, 1.5}, {13, 1.5}, {17, 5.5}, {17, 11.5}, {13, 15.5}, {7, 15.5}, {3, 11.5}, {3, 5.5}}));
  painter.setPen(PenOf(InkOn(Colors().error), 2));
  painter.drawLine(QPointF(7.5, 6), QPointF(12.5, 11));
  painter.drawLine(QPointF(12.5, 6), QPointF(7.5, 11));
}

// Two sliders.
void DrawAdjust(QPainter& painter) {
  painter.setPen(PenOf(Colors().ink, 1.6));
  painter.drawLine(QPointF(2, 5), QPointF(18, 5));
  painter.drawLine(QPointF(2, 12), QPointF(18, 12));
  painter.setPen(PenOf(Colors().ink, 1));
  painter.setBrush(kCyan);
  painter.drawRoundedRect(QRectF(10.5, 2, 4, 6), 1, 1);
  painter.drawRoundedRect(QRectF(5, 9, 4, 6), 1, 1);
}

void DrawHelp(QPainter& painter) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(Colors().accent);
  painter.drawEllipse(QPointF(10, 8.5), 7.5, 7.5);
  painter.setPen(PenOf(InkOn(Colors().accent), 1.8));
  QPainterPath mark(QPointF(7.7, 6.2));
  mark.cubicTo(7.9, 3, 12.6, 3, 12.4, 6.2);
  mark.cubicTo(12.3, 8, 10, 8, 10, 9.8);
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(mark);
  painter.drawPoint(QPointF(10, 12.8));
}

// Frames on top of each other, the highest one over the limit.
void DrawProgram(QPainter& painter) {
  const QColor frames[] = {Colors().error, kYellow, Colors().good, Colors().accent};
  painter.setPen(PenOf(Colors().ink, 0.8));
  for (int i = 0; i < 4; ++i) {
    painter.setBrush(frames[i]);
    painter.drawRoundedRect(QRectF(2, 1 + 3.5 * i, 12, 3), 0.6, 0.6);
  }
}

Drawing DrawingOf(Command command) {
  switch (command) {
    case Command::kSaveMaximumChain:
      return DrawChain;
    case Command::kRecalculate:
      return DrawRecalculate;
    case Command::kStop:
      return DrawStop;
    case Command::kAdjustStackSize:
      return DrawAdjust;
    case Command::kHelp:
      return DrawHelp;
    default:
      return nullptr;
  }
}

}  // namespace

QIcon ToolbarIcon(Command command) {
  const Drawing drawing = DrawingOf(command);
  return drawing ? DrawnIcon(drawing, kToolbarIconSize) : QIcon();
}

QIcon ProgramIcon() {
  return DrawnIcon(DrawProgram, QSize(16, 16));
}

}  // namespace velkor::ui
