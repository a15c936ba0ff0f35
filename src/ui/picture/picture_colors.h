#pragma once

#include <QBrush>
#include <QColor>
#include <QPalette>

#include "reports/icicle.h"

namespace velkor::ui {

// The colours of the picture on the ground of the window. Each kind of box differs from the others
// by its pattern or its frame too.
struct PictureColors {
  QColor ground;
  QColor ink;    // names, and what is current
  QColor quiet;  // numbers of the axis
  QColor frame;
  QColor grid;
  QColor stackLine;
  QColor hatch;

  QColor Fill(reports::IcicleKind kind) const;
  // Over the fill, without hiding texts.
  QBrush Pattern(reports::IcicleKind kind) const;
  Qt::PenStyle Frame(reports::IcicleKind kind) const;

  bool isDark = false;
};

// Dark where the palette's ground is.
PictureColors PictureColorsOf(const QPalette& palette);

}  // namespace velkor::ui
