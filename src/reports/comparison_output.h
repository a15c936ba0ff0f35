#pragma once

#include <string>
#include <string_view>

#include "reports/comparison.h"
#include "reports/result_output.h"

namespace velkor::reports {

// Two analyses side by side: a heading that is the whole answer, a row for each top-level function
// that changed, a line for each cause. Where nothing changed, the heading alone.
void WriteComparisonText(const Comparison& comparison, const ComparedAnalysis& before,
                         const ComparedAnalysis& after, ResultOutput& output);

// The same for a comment at a change; what is unchanged is folded away. What stands in a name is
// shown and means nothing.
void WriteComparisonMarkdown(const Comparison& comparison, const ComparedAnalysis& before,
                             const ComparedAnalysis& after, ResultOutput& output);

// As code of Markdown, cut to what a line bears.
std::string MarkdownName(std::string_view utf8);

}  // namespace velkor::reports
