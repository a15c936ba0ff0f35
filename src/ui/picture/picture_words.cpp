#include "ui/picture/picture_words.h"

#include "ui/picture/picture_texts.h"

namespace velkor::ui {

reports::IcicleWords PictureWords(const UiContext& context) {
  const auto text = [&context](uint32_t key) { return context.Text(key).toStdString(); };
  reports::IcicleWords words;
  words.title = text(kPictureTitle);
  words.sharing = text(kPictureSharing);
  words.stack = text(kPictureStack);
  words.bytes = text(kPictureBytes);
  words.recursion = text(kPictureRecursion);
  words.noLimit = text(kPictureNoLimit);
  words.smallLine = text(kPictureSmallLine);
  words.small = text(kPictureSmall);
  words.notKnown = text(kPictureNotKnown);
  for (uint32_t kind = 0; kind < kReasonKinds.size(); ++kind) {
    words.reasons[kind] = text(kPictureReasons + kind);
    words.reasonNames[kind] = text(kReasonWords + kind);
  }
  return words;
}

}  // namespace velkor::ui
