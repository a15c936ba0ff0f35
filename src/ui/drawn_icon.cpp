#include "ui/drawn_icon.h"

#include <QIconEngine>
#include <QPixmap>
#include <algorithm>

namespace velkor::ui {

namespace {

class DrawnEngine : public QIconEngine {
 public:
  DrawnEngine(std::function<void(QPainter&)> draw, QSize size)
      : draw_(std::move(draw)), size_(size) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const double scale = std::min(static_cast<double>(rect.width()) / size_.width(),
                                  static_cast<double>(rect.height()) / size_.height());
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setOpacity(mode == QIcon::Disabled ? 0.35 : 1);
    painter->translate(rect.x() + (rect.width() - size_.width() * scale) / 2,
                       rect.y() + (rect.height() - size_.height() * scale) / 2);
    painter->scale(scale, scale);
    draw_(*painter);
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap image(size);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return image;
  }

  QIconEngine* clone() const override { return new DrawnEngine(*this); }

 private:
  std::function<void(QPainter&)> draw_;
  QSize size_;
};

}  // namespace

QIcon DrawnIcon(std::function<void(QPainter&)> draw, QSize size) {
  return QIcon(new DrawnEngine(std::move(draw), size));
}

}  // namespace velkor::ui
