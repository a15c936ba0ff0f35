#pragma once

#include <functional>
#include <string>

#include "reports/icicle.h"
#include "reports/result_output.h"

namespace velkor::reports {

// The picture as an SVG element within HTML, drawn with the classes of the page's style. targetOf:
// the place in the page that a column leads to, by its number.
void WriteIcicleSvg(const Icicle& icicle, const std::function<std::string(size_t)>& targetOf,
                    ResultOutput& output);

}  // namespace velkor::reports
