#include "ui/picture/picture_legend.h"

#include <QPainter>

#include "ui/picture/picture_colors.h"
#include "ui/picture/picture_texts.h"

namespace velkor::ui {

using reports::IcicleKind;

namespace {

constexpr IcicleKind kKinds[] = {IcicleKind::kFunction, IcicleKind::kUndefined,
                                 IcicleKind::kRecursion, IcicleKind::kFigure,
                                 IcicleKind::kSmall,    IcicleKind::kMissing};
constexpr int kKeyWidth = 22;
constexpr int kKeyGap = 6;

void PaintKey(QPainter& painter, const QRect& key, IcicleKind kind, const PictureColors& colors) {
  painter.fillRect(key, colors.Fill(kind));
  painter.fillRect(key, colors.Pattern(kind));
  painter.setPen(QPen(colors.frame, 1, colors.Frame(kind)));
  painter.drawRect(key);
  if (kind == IcicleKind::kRecursion) {
    painter.drawLine(key.left() + 3, key.top(), key.left() + 3, key.bottom());
    painter.drawLine(key.right() - 2, key.top(), key.right() - 2, key.bottom());
  }
}

}  // namespace

PictureLegend::PictureLegend(const UiContext& context, QWidget* parent) : QWidget(parent) {
  QStringList texts;
  for (const IcicleKind kind : kKinds) {
    texts.push_back(context.Text(kPictureLegend + static_cast<uint32_t>(kind)));
    items_.push_back({false, kind, texts.back()});
  }
  texts.push_back(context.Text(kPictureStackLine));
  items_.push_back({true, {}, texts.back()});
  setAccessibleName(texts.join(", "));
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
}

template <typename Visit>
int PictureLegend::Arrange(int width, Visit visit) const {
  const int height = fontMetrics().height() + 2;
  int x = kKeyGap;
  int y = 2;
  for (const Item& item : items_) {
    const int needed = kKeyWidth + kKeyGap + fontMetrics().horizontalAdvance(item.text);
    if (x > kKeyGap && x + needed > width) {
      x = kKeyGap;
      y += height;
    }
    visit(item, QRect(x, y, needed, height));
    x += needed + 3 * kKeyGap;
  }
  return y + height + 2;
}

int PictureLegend::heightForWidth(int width) const {
  return Arrange(width, [](const Item&, const QRect&) {});
}

QSize PictureLegend::sizeHint() const {
  return {400, heightForWidth(400)};
}

void PictureLegend::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const PictureColors colors = PictureColorsOf(palette());
  Arrange(width(), [&](const Item& item, const QRect& place) {
    const QRect key(place.left(), place.top() + 2, kKeyWidth, place.height() - 5);
    if (item.isLine) {
      painter.setPen(QPen(colors.stackLine, 2.5, Qt::DashLine));
      painter.drawLine(key.left(), key.center().y(), key.right(), key.center().y());
    } else {
      PaintKey(painter, key, item.kind, colors);
    }
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(place.adjusted(kKeyWidth + kKeyGap, 0, 0, 0),
                     Qt::AlignVCenter | Qt::TextSingleLine, item.text);
  });
}

}  // namespace velkor::ui
