#include "ui/views/function_order.h"

#include <algorithm>
#include <numeric>
#include <unordered_map>

namespace velkor::ui {

namespace {

uint32_t Limited(uint64_t size, uint32_t sizeLimit) {
  return size > sizeLimit ? kOverSize : static_cast<uint32_t>(size);
}

uint64_t Doubled(uint32_t size, bool laterAmongZeros) {
  return size == 0 ? (laterAmongZeros ? 1 : 0) : uint64_t{size} * 2;
}

// The place of every file among those of the rows: comparing paths is dear, and many functions
// share a file. 0 is no file; no two files have names that differ only in letter case.
std::unordered_map<const StkFileEntry*, uint64_t> PlacesOfFiles(const std::vector<SortValues>& rows,
                                                                const CodePage& codePage) {
  std::unordered_map<const StkFileEntry*, uint64_t> places{{nullptr, 0}};
  std::vector<const StkFileEntry*> files;
  for (const SortValues& row : rows) {
    if (places.try_emplace(row.file, 0).second) {
      files.push_back(row.file);
    }
  }
  std::sort(files.begin(), files.end(), [&](const StkFileEntry* a, const StkFileEntry* b) {
    return codePage.CompareIgnoreCase(a->name, b->name) < 0;
  });
  for (size_t i = 0; i < files.size(); ++i) {
    places[files[i]] = i + 1;
  }
  return places;
}

std::vector<uint64_t> Numbers(const std::vector<SortValues>& rows, SortKey key,
                              const CodePage& codePage) {
  std::vector<uint64_t> numbers(rows.size());
  if (key == SortKey::kFile) {
    const auto places = PlacesOfFiles(rows, codePage);
    std::transform(rows.begin(), rows.end(), numbers.begin(),
                   [&](const SortValues& row) { return places.at(row.file); });
    return numbers;
  }
  std::transform(rows.begin(), rows.end(), numbers.begin(), [&](const SortValues& row) {
    return key == SortKey::kTotal    ? row.total
           : key == SortKey::kBound  ? row.known
           : key == SortKey::kMark   ? row.missing
           : key == SortKey::kFrame  ? row.frame
           : key == SortKey::kMargin ? row.margin
                                     : static_cast<uint64_t>(row.icon);
  });
  return numbers;
}

// What a function's adjustment, or else its library size, adds to its stack, in bytes; kOverSize
// above the limit.
uint32_t AdditionalAmount(const StkFunction& function, uint32_t sizeLimit) {
  if (!function.adjustment) {
    return function.Is(FN_LIBRARY | FN_FIXED_EXTRA) ? Limited(function.librarySize, sizeLimit) : 0;
  }
  const StkAppliedAdjustment& adjustment = *function.adjustment;
  const uint64_t depth =
      function.Is(FN_RECURSIVE) && adjustment.depth != kNoDepth ? adjustment.depth : 1;
  uint64_t amount = adjustment.margin == kNoMargin ? 0 : adjustment.margin * depth;
  if (amount > sizeLimit) {
    return kOverSize;
  }
  if (depth > 1) {
    const uint64_t round = uint64_t{function.frameSize} + function.maxCalleeSize;
    if (round > sizeLimit) {
      return kOverSize;
    }
    amount += round * (depth - 1);
  }
  return Limited(amount, sizeLimit);
}

}  // namespace

SortValues SortValuesOf(const StkFunction& function, int icon, uint32_t sizeLimit) {
  const bool hasAmount = function.adjustment || function.Is(FN_LIBRARY);
  SortValues values;
  values.name = function.name;
  values.file = function.file;
  values.total = Doubled(function.totalStackSize, function.Is(FN_DEFINED) || hasAmount);
  values.frame = Doubled(function.frameSize, function.Is(FN_DEFINED));
  values.margin = Doubled(AdditionalAmount(function, sizeLimit), hasAmount);
  values.icon = icon;
  values.tableIndex = function.index;
  return values;
}

std::vector<uint32_t> SortedPositions(const std::vector<SortValues>& rows, SortKey key,
                                      bool descending, const CodePage& codePage) {
  std::vector<uint32_t> positions(rows.size());
  std::iota(positions.begin(), positions.end(), 0u);
  if (positions.size() < 3) {
    return positions;
  }
  const auto sort = [&](const auto& compare) {
    std::stable_sort(positions.begin() + 1, positions.end(), [&](uint32_t a, uint32_t b) {
      const int order = descending ? compare(b, a) : compare(a, b);
      return order != 0 ? order < 0 : rows[a].tableIndex < rows[b].tableIndex;
    });
  };
  if (key == SortKey::kName) {
    sort([&](uint32_t a, uint32_t b) { return codePage.Compare(rows[a].name, rows[b].name); });
    return positions;
  }
  const std::vector<uint64_t> numbers = Numbers(rows, key, codePage);
  sort([&](uint32_t a, uint32_t b) {
    return numbers[a] < numbers[b] ? -1 : numbers[a] > numbers[b] ? 1 : 0;
  });
  return positions;
}

}  // namespace velkor::ui
