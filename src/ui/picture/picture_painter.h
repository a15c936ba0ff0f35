#pragma once

#include <QPainter>
#include <optional>

#include "reports/icicle_layout.h"
#include "ui/picture/picture_colors.h"
#include "ui/picture/picture_place.h"

namespace velkor::ui {

// Draws the part of a picture that is seen. The names of the columns stay above their boxes, and
// the axis beside them, however far they are scrolled.
class PicturePainter {
 public:
  // scroll: what of the picture is above and left of the area.
  PicturePainter(QPainter& painter, const reports::IcicleLayout& layout,
                 const PictureColors& colors, QSizeF area, QPointF scroll);

  void Paint(PicturePlace current, std::optional<PicturePlace> hovered, bool hasFocus);

 private:
  void PaintColumn(size_t column);
  void PaintBox(size_t column, const reports::IcicleBox& box);
  void PaintLines(size_t column, const reports::IcicleBox& box, const QRectF& rect);
  void PaintHead(size_t column);
  void PaintAxis();
  void PaintFrame(PicturePlace place, double width);
  QRectF RectOf(size_t column, const reports::IcicleBox& box) const;
  QRectF HeadOf(size_t column) const;

  QPainter& painter_;
  const reports::IcicleLayout& layout_;
  const PictureColors& colors_;
  const QSizeF area_;
  const QPointF scroll_;
  const QFont font_;
};

}  // namespace velkor::ui
