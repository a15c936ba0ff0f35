#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "core/function.h"

namespace velkor::ui {

// By what the function list can be sorted.
enum class SortKey { kName, kTotal, kFrame, kMargin, kFile, kIcon, kBound, kMark };

// What a function's row is sorted by, as it stood when the row was made: sorting reads no function
// that a job may be changing. Refers to the function's name and file, which stay.
struct SortValues {
  std::string_view name;  // the symbol
  const StkFileEntry* file = nullptr;
  // A size doubled, so that among zeros the lowest bit tells which comes first.
  uint64_t total = 0;
  uint64_t frame = 0;
  uint64_t margin = 0;  // what the adjustment, or else the library size, adds to the stack
  int icon = 0;
  uint64_t known = 0;    // the bound, or what is known of it
  uint32_t missing = 0;  // 0: the total can be taken for the bound
  uint32_t tableIndex = 0;  // decides between equal rows, in both directions
};

SortValues SortValuesOf(const StkFunction& function, int icon, uint32_t sizeLimit);

// The positions of the rows in their sorted order. The first row stays the first.
std::vector<uint32_t> SortedPositions(const std::vector<SortValues>& rows, SortKey key,
                                      bool descending, const CodePage& codePage);

}  // namespace velkor::ui
