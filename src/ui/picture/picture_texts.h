#pragma once

#include <cstdint>

#include "ui/commands/commands.h"

namespace velkor::ui {

// The texts of the picture, by their catalogue keys.
enum PictureText : uint32_t {
  kReasonWords = kDialogTextKey * 510 + 1,  // one a kind of reason
  kPictureTitle = kDialogTextKey * 512 + 1,
  kPictureSharing,
  kPictureStack,
  kPictureBytes,
  kPictureRecursion,
  kPictureNoLimit,
  kPictureSmallLine,
  kPictureSmall,
  kPictureNotKnown,
  kPictureReasons = kDialogTextKey * 512 + 11,  // one a kind of reason
  kPictureName = kDialogTextKey * 512 + 21,
  kPictureEmpty,
  kPictureLegend = kDialogTextKey * 512 + 31,  // one a kind of box
  kPictureStackLine = kDialogTextKey * 512 + 37,
};

}  // namespace velkor::ui
