#pragma once

#include <QIcon>
#include <QPainter>
#include <QSize>
#include <functional>

namespace velkor::ui {

// An icon that is drawn, in an area of the given size, whenever it is shown: no scale blurs it. A
// disabled one is faint.
QIcon DrawnIcon(std::function<void(QPainter&)> draw, QSize size);

}  // namespace velkor::ui
