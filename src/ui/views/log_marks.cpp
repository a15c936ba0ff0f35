#include "ui/views/log_marks.h"

#include <QPainter>

#include "ui/sign_colors.h"

namespace velkor::ui {

namespace {

void PaintLetter(QPainter& painter, const QRectF& square, const QString& letter) {
  QFont font = painter.font();
  font.setBold(true);
  font.setPixelSize(std::max(6, static_cast<int>(square.height() * 0.75)));
  painter.setFont(font);
  painter.drawText(square, Qt::AlignCenter, letter);
}

}  // namespace

void PaintLogSign(QPainter& painter, const QRectF& square, LogLevel level,
                  const QPalette& palette) {
  const SignColors colors = SignColorsOn(palette.color(QPalette::Base));
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  switch (level) {
    case LogLevel::kLine:
      break;
    case LogLevel::kNote:
      painter.setPen(QPen(colors.note, 1.2));
      painter.drawRect(square);
      PaintLetter(painter, square, "i");
      break;
    case LogLevel::kWarning:
      painter.setPen(QPen(colors.warning, 1.2));
      painter.drawPolygon(QPolygonF(
          {square.bottomLeft(), square.bottomRight(), {square.center().x(), square.top()}}));
      PaintLetter(painter, square.adjusted(0, square.height() * 0.25, 0, 0), "!");
      break;
    case LogLevel::kError:
      painter.setPen(QPen(colors.error, 1.6));
      painter.drawEllipse(square);
      painter.drawLine(square.center() - QPointF(2.5, 2.5), square.center() + QPointF(2.5, 2.5));
      painter.drawLine(square.center() - QPointF(2.5, -2.5), square.center() + QPointF(2.5, -2.5));
      break;
  }
  painter.restore();
}

}  // namespace velkor::ui
