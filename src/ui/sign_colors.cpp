#include "ui/sign_colors.h"

#include <algorithm>
#include <cmath>

namespace velkor::ui {

namespace {

double Linear(double component) {
  return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& color) {
  return 0.2126 * Linear(color.redF()) + 0.7152 * Linear(color.greenF()) +
         0.0722 * Linear(color.blueF());
}

}  // namespace

double Contrast(const QColor& one, const QColor& other) {
  const double a = Luminance(one) + 0.05;
  const double b = Luminance(other) + 0.05;
  return std::max(a, b) / std::min(a, b);
}

bool IsDark(const QColor& background) {
  return Contrast(background, Qt::white) > Contrast(background, Qt::black);
}

QColor InkOn(const QColor& background) {
  return IsDark(background) ? Qt::white : Qt::black;
}

SignColors SignColorsOn(const QColor& background) {
  if (IsDark(background)) {
    return {.ink = QColor(0xE4EAF0),
            .note = QColor(0x8CC4FF),
            .warning = QColor(0xFFD24A),
            .error = QColor(0xFF9C9C),
            .accent = QColor(0x8CC4FF),
            .good = QColor(0x6FDD9A)};
  }
  return {.ink = QColor(0x2F3C4A),
          .note = QColor(0x1A5BA6),
          .warning = QColor(0x7A5200),
          .error = QColor(0xB01E1E),
          .accent = QColor(0x1A5BA6),
          .good = QColor(0x1C6B40)};
}

}  // namespace velkor::ui
