#pragma once

#include <string_view>

#include "ui/language.h"

namespace velkor::ui {

// The file name of a topic's page as it is shipped; topic is 1 to 3.
std::string_view HelpPageName(int topic);
// The page of that file name as it is linked into the program, in UTF-8; empty for another name.
std::string_view EmbeddedHelpPage(std::string_view name, Language language);

}  // namespace velkor::ui
