#pragma once

#include <string>

#include "messages/note.h"

namespace velkor::reports {

// "app.psg:3: What is noted. [its-rule]", in bytes of the code page; without a file the text and
// the rule alone.
std::string NoteLine(const StkNote& note);

}  // namespace velkor::reports
