#pragma once

#include <string>

#include "reports/icicle_layout.h"
#include "ui/ui_context.h"

namespace velkor::ui {

// Writes the picture to a file. Nothing after a message where that must not be written to.
void WritePicture(UiContext& context, const reports::IcicleLayout& layout,
                  const std::string& path);

}  // namespace velkor::ui
