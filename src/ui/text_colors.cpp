#include "ui/text_colors.h"

#include "ui/sign_colors.h"

namespace velkor::ui {

QColor PaleText(const QPalette& palette, QPalette::ColorGroup group) {
  constexpr float kText = 0.7F;
  const QColor text = palette.color(group, QPalette::Text);
  const QColor base = palette.color(group, QPalette::Base);
  const auto mix = [](float a, float b) { return kText * a + (1 - kText) * b; };
  return QColor::fromRgbF(mix(text.redF(), base.redF()), mix(text.greenF(), base.greenF()),
                          mix(text.blueF(), base.blueF()));
}

QColor LinkText(const QPalette& palette) {
  const QColor base = palette.color(QPalette::Base);
  const QColor link = palette.color(QPalette::Link);
  if (Contrast(link, base) >= kReadable) {
    return link;
  }
  return base.lightnessF() < 0.5F ? QColor(0x7a, 0xb8, 0xff) : QColor(0x0b, 0x4f, 0x8a);
}

void SetHintColor(QWidget& field) {
  QPalette own;
  own.setColor(QPalette::PlaceholderText, PaleText(field.palette()));
  field.setPalette(own);
}

}  // namespace velkor::ui
