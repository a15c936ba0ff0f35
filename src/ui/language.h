#pragma once

#include <initializer_list>

#include "messages/catalogue.h"

namespace velkor::ui {

// The sets of texts that the window can show.
enum class Language { kEnglish, kJapanese };

// settings: the environment's language settings, the strongest first; none (nullptr) and empty
// ones say nothing. Where none says anything the system's own language decides.
Language ChooseLanguage(std::initializer_list<const char*> settings, bool systemIsJapanese);
// From LC_ALL, LC_MESSAGES and LANG, else from the system.
Language UserLanguage();

// Messages and window texts of the language; English where the code page cannot show a text.
StkMessages WindowMessages(const CodePage& codePage, Language language);

}  // namespace velkor::ui
