#pragma once

#include <QIcon>
#include <QPainter>
#include <QPalette>

#include "ui/summary/summary_rows.h"

namespace velkor::ui {

// A disc with a tick, a triangle with a question mark, an octagon with an exclamation mark, a
// square with an i; nothing for kNone.
QIcon SummaryMarkIcon(SummaryMark mark);

// A bar of the stack's size, filled as far as it is needed. What is too much is crossed, beyond a
// line where the stack ends; what can come on top of a need without a bound is hatched.
void PaintBudget(QPainter& painter, const QRectF& area, const StackBudget& budget,
                 const QPalette& palette);

}  // namespace velkor::ui
