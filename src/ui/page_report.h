#pragma once

#include <string>

#include "ui/ui_context.h"

namespace velkor::ui {

// Writes the analysis that the window shows as one page of HTML with a picture, in this thread. The
// log says how it ended. The document has functions that no job is changing.
void WritePageReport(UiContext& context, const std::string& path);

}  // namespace velkor::ui
