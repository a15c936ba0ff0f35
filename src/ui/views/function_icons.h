#pragma once

#include <QColor>
#include <QIcon>
#include <QRect>

#include "core/function.h"

class QPainter;

namespace velkor::ui {

// The drawn images of the tree and the list: sharp at every scale. User-interface thread.

// 0 to 4: the image of the function. onMaximumChain: the view marks a callee whose total is the
// largest among its siblings.
int IconIndex(const StkFunction& function, bool onMaximumChain);

// Of the box of a kind, by icon index 0 to 4.
QColor KindColor(int iconIndex);

// 16 x 16: a box in the colour of the function's kind, with a sign of the kind in it; icon index 0
// to 4.
QIcon TreeIcon(int iconIndex);
// 32 x 16: the box in the left half for the first row (0 to 4), in the right half for a callee row
// (10 to 14).
constexpr int kCalleeRow = 10;
QIcon ListIcon(int iconIndex);

constexpr QSize kTreeIconSize(16, 16);
constexpr QSize kListIconSize(32, 16);
constexpr QSize kArrowSize(9, 5);

// The triangle of a sorted column: up for an ascending order, down for a descending one.
void PaintArrow(QPainter& painter, const QRect& rect, bool descending, const QColor& color);

}  // namespace velkor::ui
