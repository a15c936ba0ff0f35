#include "ui/picture/picture_colors.h"

#include "ui/sign_colors.h"
#include "ui/text_colors.h"

namespace velkor::ui {

using reports::IcicleKind;

QColor PictureColors::Fill(IcicleKind kind) const {
  switch (kind) {
    case IcicleKind::kFunction:
      return isDark ? QColor(0x1f, 0x42, 0x63) : QColor(0xcf, 0xe3, 0xf5);
    case IcicleKind::kUndefined:
      return isDark ? QColor(0x4a, 0x4a, 0x4a) : QColor(0xe3, 0xe3, 0xe3);
    case IcicleKind::kRecursion:
      return isDark ? QColor(0x66, 0x40, 0x14) : QColor(0xfd, 0xe0, 0xc2);
    case IcicleKind::kFigure:
      return isDark ? QColor(0x2f, 0x4d, 0x24) : QColor(0xdc, 0xea, 0xd2);
    case IcicleKind::kSmall:
    case IcicleKind::kMissing:
      break;
  }
  return ground;
}

QBrush PictureColors::Pattern(IcicleKind kind) const {
  switch (kind) {
    case IcicleKind::kSmall:
      return {hatch, Qt::HorPattern};
    case IcicleKind::kMissing:
      return {hatch, Qt::BDiagPattern};
    case IcicleKind::kFigure:
      return {hatch, Qt::Dense7Pattern};
    default:
      return Qt::NoBrush;
  }
}

Qt::PenStyle PictureColors::Frame(IcicleKind kind) const {
  switch (kind) {
    case IcicleKind::kUndefined:
      return Qt::DotLine;
    case IcicleKind::kMissing:
      return Qt::DashLine;
    default:
      return Qt::SolidLine;
  }
}

PictureColors PictureColorsOf(const QPalette& palette) {
  PictureColors colors;
  colors.ground = palette.color(QPalette::Base);
  colors.isDark = IsDark(colors.ground);
  colors.ink = palette.color(QPalette::Text);
  colors.quiet = PaleText(palette);
  colors.frame = colors.isDark ? QColor(0x9a, 0xa8, 0xb8) : QColor(0x54, 0x61, 0x6f);
  colors.grid = colors.isDark ? QColor(0x45, 0x4b, 0x52) : QColor(0xe1, 0xe5, 0xea);
  colors.stackLine = colors.isDark ? QColor(0xff, 0x8a, 0x80) : QColor(0xa0, 0x15, 0x15);
  colors.hatch = colors.isDark ? QColor(0x50, 0x56, 0x5e) : QColor(0xd5, 0xd9, 0xdf);
  return colors;
}

}  // namespace velkor::ui
