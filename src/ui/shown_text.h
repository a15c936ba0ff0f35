#pragma once

#include <QString>
#include <string>
#include <string_view>

#include "core/function.h"
#include "platform/code_page.h"

namespace velkor::ui {

// The function's display name as a row of the tree or the list shows it, in code page bytes.
std::string RowName(const StkFunction& function, const CodePage& codePage);

// The text as a row shows it: of one longer than 259 bytes the first 256 at most, never half a
// character, and "...".
std::string CutToRow(std::string text, const CodePage& codePage);

// Of a text that reports made.
QString FromUtf8(std::string_view text);

// For the screen; undecodable bytes show as U+FFFD.
QString ForScreen(std::string_view bytes, const CodePage& codePage);

}  // namespace velkor::ui
