#pragma once

#include <QColor>
#include <QPalette>
#include <QWidget>

namespace velkor::ui {

// The least contrast of a text with its ground.
constexpr double kReadable = 4.5;

// Between text and ground, for what stands beside the main thing; read on either theme.
QColor PaleText(const QPalette& palette, QPalette::ColorGroup group = QPalette::Active);
// The palette's own where it can be read.
QColor LinkText(const QPalette& palette);
// What an empty field says of itself is pale text: not every dark theme gives it a color.
void SetHintColor(QWidget& field);

}  // namespace velkor::ui
