#include "ui/text_zoom.h"

#include <QApplication>
#include <algorithm>

namespace velkor::ui {

TextZoom::TextZoom() : own_(QApplication::font()) {}

TextZoom::~TextZoom() {
  Set(100);
}

void TextZoom::Set(int percent) {
  percent = std::clamp(percent, kLeast, kMost);
  if (percent == percent_) {
    return;
  }
  percent_ = percent;
  QFont font = own_;
  if (own_.pointSizeF() > 0) {
    font.setPointSizeF(own_.pointSizeF() * percent / 100);
  } else {
    font.setPixelSize(std::max(1, own_.pixelSize() * percent / 100));
  }
  QApplication::setFont(font);
}

}  // namespace velkor::ui
