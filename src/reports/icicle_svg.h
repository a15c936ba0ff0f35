#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "reports/icicle_layout.h"
#include "reports/result_output.h"

namespace velkor::reports {

// The picture as an SVG element within HTML, drawn with the classes of the page's style. targetOf:
// the place in the page that a column leads to, by its number.
void WriteIcicleSvg(const IcicleLayout& layout, const std::function<std::string(size_t)>& targetOf,
                    ResultOutput& output);

// The same as a file of its own, on white.
void WriteIcicleFile(const IcicleLayout& layout, ResultOutput& output);

// How its parts look, as a style sheet.
std::string_view IcicleStyle();

}  // namespace velkor::reports
