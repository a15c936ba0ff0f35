#pragma once

#include <QString>
#include <array>

#include "ui/commands/commands.h"
#include "ui/ui_context.h"

namespace velkor::ui {

// Texts of the catalogue that only assistive technology reads: the names of the two views, and
// what the five icons mean, in words, for those who do not see them.
constexpr uint32_t kCallTreeNameKey = kDialogTextKey * 500 + 1001;
constexpr uint32_t kFunctionListNameKey = kDialogTextKey * 500 + 1002;

// By icon index 0 to 4.
using KindDescriptions = std::array<QString, 5>;

KindDescriptions KindsFrom(const UiContext& context);

}  // namespace velkor::ui
