#include "ui/function_icons.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <array>

namespace velkor {

namespace {

constexpr int kCalleeRow = 10;

// On the maximum chain, adjusted or library, recursive, unknown, defined.
constexpr std::array<QRgb, 5> kColors = {0xFFE02020, 0xFF20D0E0, 0xFF30B030, 0xFFFFE020,
                                         0xFFFFFFFF};

// A box drawn into whatever rectangle is asked for, so that no scale blurs it.
class BoxEngine : public QIconEngine {
 public:
  BoxEngine(QRgb color, int cells, int cell) : color_(color), cells_(cells), cell_(cell) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const qreal width = static_cast<qreal>(rect.width()) / cells_;
    const qreal side = std::min(width, static_cast<qreal>(rect.height())) * 10 / 16;
    QRectF box(0, 0, side, side);
    box.moveCenter({rect.left() + width * (cell_ + 0.5), rect.top() + rect.height() / 2.0});
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setOpacity(mode == QIcon::Disabled ? painter->opacity() / 2 : painter->opacity());
    painter->setPen(QPen(QColor(64, 64, 64), side / 10));
    painter->setBrush(QColor::fromRgb(color_));
    painter->drawRect(box);
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap image(size);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return image;
  }

  QIconEngine* clone() const override { return new BoxEngine(*this); }

 private:
  QRgb color_;
  int cells_;  // of equal width side by side
  int cell_;   // the one that holds the box
};

}  // namespace

QIcon TreeIcon(int iconIndex) {
  return QIcon(new BoxEngine(kColors.at(static_cast<size_t>(iconIndex)), 1, 0));
}

QIcon ListIcon(int iconIndex) {
  const int cell = iconIndex >= kCalleeRow ? 1 : 0;
  const int kind = iconIndex - cell * kCalleeRow;
  return QIcon(new BoxEngine(kColors.at(static_cast<size_t>(kind)), 2, cell));
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

}  // namespace velkor
