#pragma once

#include <string>

#include "messages/note.h"
#include "reports/analysis_result.h"

namespace velkor::reports {

// "app.psg:3: What is noted. [its-rule]", in the bytes of the note's own texts; without a file the
// text and the rule alone.
std::string NoteLine(const StkNote& note);
std::string NoteLine(const AnalysisNote& note);

}  // namespace velkor::reports
