#pragma once

#include <string>
#include <string_view>

namespace velkor::reports {

// UTF-8 as it stands in HTML and SVG, in a text and in an attribute: "&", "<", ">" and quotes are
// references, and a control character is U+FFFD. Line feeds stay.
std::string HtmlText(std::string_view utf8);

// A name, kept apart from the direction of the text around it.
std::string HtmlName(std::string_view utf8);

}  // namespace velkor::reports
