#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velkor {

// Single-character changes from one text to the other, two neighbours that change places counted as
// one. In time of the product of their lengths.
size_t EditDistance(std::string_view left, std::string_view right);

// The first of the words that are nearest to a misspelt one; empty where none is near.
std::string NearestWord(std::string_view given, const std::vector<std::string>& words);

}  // namespace velkor
