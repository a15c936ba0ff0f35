#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velkor::reports {

// The numbers at the start of a line of a text output, or what stands for them.
struct TableColumns {
  std::string bytes;
  std::string total;
  std::string frame;
};

// A text so far to the right in a column of ten characters.
std::string PaddedColumn(std::string_view text);
// The columns, apart from each other whatever they hold, then the text, indented by its level; with
// a line feed.
std::string TableLine(const TableColumns& columns, size_t level, std::string_view text);

}  // namespace velkor::reports
