#include "ui/text_colors.h"

#include <algorithm>
#include <cmath>

namespace velkor::ui {

namespace {

double Linear(float part) {
  const auto value = static_cast<double>(part);
  return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& color) {
  return 0.2126 * Linear(color.redF()) + 0.7152 * Linear(color.greenF()) +
         0.0722 * Linear(color.blueF());
}

}  // namespace

double Contrast(const QColor& one, const QColor& other) {
  const auto [darker, lighter] = std::minmax({Luminance(one), Luminance(other)});
  return (lighter + 0.05) / (darker + 0.05);
}

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

}  // namespace velkor::ui
