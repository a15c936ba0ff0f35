#pragma once

#include <QString>
#include <array>
#include <string>
#include <string_view>

#include "core/function.h"
#include "platform/code_page.h"
#include "ui/commands/commands.h"
#include "ui/ui_context.h"

namespace velkor::ui {

// A row's name holds at most this many bytes; of a longer one stand the first kCutNameLength
// bytes at most, never half a character, and "...".
constexpr size_t kMaxNameLength = 259;
constexpr size_t kCutNameLength = 256;

// The function's display name as a row of the tree or the list shows it, in code page bytes.
std::string RowName(const StkFunction& function, const CodePage& codePage);

// For the screen; undecodable bytes show as U+FFFD.
QString ForScreen(std::string_view bytes, const CodePage& codePage);

// What the five icons mean, in words, for those who do not see them; by icon index 0 to 4.
using KindDescriptions = std::array<QString, 5>;

// Texts of the catalogue that only assistive technology reads: the names of the two views, and
// kKindDescriptionKey + icon index 0 to 4.
constexpr uint32_t kCallTreeNameKey = kDialogTextKey * 500 + 1001;
constexpr uint32_t kFunctionListNameKey = kDialogTextKey * 500 + 1002;
constexpr uint32_t kKindDescriptionKey = kDialogTextKey * 500 + 1010;

KindDescriptions KindsFrom(const UiContext& context);

}  // namespace velkor::ui
