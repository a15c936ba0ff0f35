#pragma once

#include <QString>
#include <optional>
#include <string>

#include "ui/ui_context.h"

namespace velkor::ui {

// What is checked when the user confirms a file name. User-interface thread.

// The name as the analysis will use it; none after the user has been told, or has decided, that
// it will not do.
std::optional<std::string> NameToOpen(const QString& path, UiContext& context);
// The same for a file to be written; an existing one only if the user wants to overwrite it.
std::optional<std::string> NameToSave(const QString& path, UiContext& context);

}  // namespace velkor::ui
