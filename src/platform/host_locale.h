#pragma once

#include <string>

namespace velkor {

// Character sets by name, for CodePage::FromName; empty: none is named.

// Of the texts that the user's programs write: that of the environment's locale (LC_ALL, LC_CTYPE,
// LANG), or the system's code page.
std::string CharacterSetOfLocale();
// Of what this program and its host exchange: names of files, arguments, environment.
std::string CharacterSetOfHost();

}  // namespace velkor
