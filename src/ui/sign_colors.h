#pragma once

#include <QColor>

namespace velkor::ui {

// How much two colours differ in brightness, from 1 (not at all) to 21 (black on white):
// (L1 + 0.05) / (L2 + 0.05) of their relative luminances, of sRGB.
double Contrast(const QColor& one, const QColor& other);
bool IsDark(const QColor& background);
// Black or white, whichever is the easier to see.
QColor InkOn(const QColor& background);

// What signs and drawn images are made of, told apart from what they stand on by a contrast of 4.5
// at least, on light and dark backgrounds.
struct SignColors {
  QColor ink;  // outlines and plain lines
  QColor note;
  QColor warning;
  QColor error;
  QColor accent;
  QColor good;
};
SignColors SignColorsOn(const QColor& background);

}  // namespace velkor::ui
