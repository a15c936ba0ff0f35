#pragma once

#include <QColor>
#include <QPalette>

namespace velkor::ui {

// The least contrast of a text with its ground.
constexpr double kReadable = 4.5;

// Between text and ground, for what stands beside the main thing; read on either theme.
QColor PaleText(const QPalette& palette, QPalette::ColorGroup group = QPalette::Active);
// The palette's own where it can be read.
QColor LinkText(const QPalette& palette);

}  // namespace velkor::ui
