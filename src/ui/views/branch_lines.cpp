#include "ui/views/branch_lines.h"

#include <QAbstractItemModel>

namespace velkor::ui {

void DrawBranchLines(QPainter& painter, const QRect& rect, const QModelIndex& index,
                     int indentation) {
  QRect cell(rect.right() + 1 - indentation, rect.top(), indentation, rect.height());
  QModelIndex node = index;
  for (bool own = true; node.isValid() && cell.right() >= 0; own = false) {
    const QModelIndex parent = node.parent();
    const bool goesOn = node.row() + 1 < index.model()->rowCount(parent);
    const bool comesFromAbove = parent.isValid() || node.row() > 0;
    const QPoint center = cell.center();
    if (own && comesFromAbove) {
      painter.drawLine(center.x(), cell.top(), center.x(), center.y());
    }
    if (own) {
      painter.drawLine(center.x(), center.y(), cell.right(), center.y());
    }
    if (goesOn) {
      painter.drawLine(center.x(), own ? center.y() : cell.top(), center.x(), cell.bottom());
    }
    cell.translate(-indentation, 0);
    node = parent;
  }
}

}  // namespace velkor::ui
