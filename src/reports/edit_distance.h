#pragma once

#include <cstddef>
#include <string_view>

namespace velkor::reports {

// Single-character changes from one text to the other, two neighbours that change places counted as
// one. In time of the product of their lengths.
size_t EditDistance(std::string_view left, std::string_view right);

}  // namespace velkor::reports
