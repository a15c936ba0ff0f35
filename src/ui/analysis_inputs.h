#pragma once

#include "document/document.h"
#include "reports/analysis_result.h"

namespace velkor::ui {

// The modules of the document's input by what became of them.
reports::AnalysisInputs InputsOf(CStkDoc& document);

}  // namespace velkor::ui
