#pragma once

#include <QModelIndex>
#include <QPainter>
#include <QRect>

namespace velkor::ui {

// The lines between the nodes of a tree, which not every style draws, in the part of the row before
// the node. indentation: the width of each level.
void DrawBranchLines(QPainter& painter, const QRect& rect, const QModelIndex& index,
                     int indentation);

}  // namespace velkor::ui
