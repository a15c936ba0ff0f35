#pragma once

#include <QColor>
#include <QPalette>
#include <QRectF>
#include <QWidget>
#include <cstdint>

class QPainter;

namespace velkor::ui {

// How much a line of the log matters.
enum class LogLevel : int { kLine, kNote, kWarning, kError };

// Its sign, in a square: nothing for a plain line; a letter in a box for a note, a triangle for a
// warning, a crossed circle for an error.
void PaintLogSign(QPainter& painter, const QRectF& square, LogLevel level, const QPalette& palette);

}  // namespace velkor::ui
