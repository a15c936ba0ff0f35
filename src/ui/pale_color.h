#pragma once

#include <QColor>
#include <QPalette>

namespace velkor::ui {

// Between text and ground, for what stands beside the main thing: still read on either theme.
inline QColor PaleText(const QPalette& palette, QPalette::ColorGroup group = QPalette::Active) {
  constexpr float kText = 0.7F;
  const QColor text = palette.color(group, QPalette::Text);
  const QColor base = palette.color(group, QPalette::Base);
  const auto mix = [](float a, float b) { return kText * a + (1 - kText) * b; };
  return QColor::fromRgbF(mix(text.redF(), base.redF()), mix(text.greenF(), base.greenF()),
                          mix(text.blueF(), base.blueF()));
}

}  // namespace velkor::ui
