#pragma once

#include "reports/icicle_layout.h"
#include "ui/ui_context.h"

namespace velkor::ui {

// The words of the picture in the user's language.
reports::IcicleWords PictureWords(const UiContext& context);

}  // namespace velkor::ui
