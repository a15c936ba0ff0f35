#include "reports/table_line.h"

#include "reports/terminal_text.h"

namespace velkor::reports {

namespace {

constexpr size_t kWidth = 10;

// Apart from the column before it, however long the text is.
std::string NextColumn(std::string_view text) {
  return CharacterCount(text) < kWidth ? PaddedColumn(text) : " " + std::string(text);
}

}  // namespace

std::string PaddedColumn(std::string_view text) {
  const size_t length = CharacterCount(text);
  return std::string(length < kWidth ? kWidth - length : 0, ' ') + std::string(text);
}

std::string TableLine(const TableColumns& columns, size_t level, std::string_view text) {
  constexpr size_t kIndentation = 2;
  return PaddedColumn(columns.bytes) + NextColumn(columns.total) + NextColumn(columns.frame) +
         std::string(kIndentation * (1 + level), ' ') + std::string(text) + "\n";
}

}  // namespace velkor::reports
