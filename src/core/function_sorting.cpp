#include "core/function_sorting.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <numeric>
#include <vector>

#include "core/function.h"

namespace velkor {

namespace {

// From here on a list is worth the keys.
constexpr size_t kLongList = 64;
constexpr size_t kVeryLongList = 4096;

int CompareNames(const StkFunction& left, const StkFunction& right, const CodePage& codePage) {
  const int order = codePage.Compare(left.name, right.name);
  return order != 0 ? order : left.index < right.index ? -1 : 1;
}

// A function with the bytes of its name, as a number, that follow what all names of the list begin
// with: where these differ, neither the functions nor the names need to be read.
struct KeyedFunction {
  uint64_t key = 0;
  StkFunction* function = nullptr;
};

size_t CommonPrefix(std::string_view left, std::string_view right) {
  const auto [end, ignored] = std::ranges::mismatch(left, right);
  return static_cast<size_t>(end - left.begin());
}

size_t CommonPrefix(StkFunctionSpan list) {
  std::string_view prefix = list.front()->name;
  for (const StkFunction* function : list) {
    prefix = prefix.substr(0, CommonPrefix(prefix, function->name));
  }
  return prefix.size();
}

// A name that ends earlier counts as going on with zero bytes; the names decide then.
uint64_t KeyOf(std::string_view name, size_t prefix) {
  uint64_t key = 0;
  for (size_t i = 0; i < sizeof key; ++i) {
    const size_t position = prefix + i;
    key = key << 8 | (position < name.size() ? static_cast<unsigned char>(name[position]) : 0u);
  }
  return key;
}

// Equal keys stay in their order. Byte after byte from the last, those left out that all keys
// share: a fraction of the time of comparisons where there are very many.
void SortByKey(std::vector<KeyedFunction>& keyed) {
  std::array<std::array<uint32_t, 256>, sizeof(uint64_t)> counts{};
  const auto byteOf = [](const KeyedFunction& each, size_t byte) {
    return static_cast<uint8_t>(each.key >> 8 * byte);
  };
  for (const KeyedFunction& each : keyed) {
    for (size_t byte = 0; byte < counts.size(); ++byte) {
      ++counts[byte][byteOf(each, byte)];
    }
  }
  std::vector<KeyedFunction> sorted(keyed.size());
  for (size_t byte = 0; byte < counts.size(); ++byte) {
    auto& places = counts[byte];
    if (places[byteOf(keyed.front(), byte)] == keyed.size()) {
      continue;
    }
    std::exclusive_scan(places.begin(), places.end(), places.begin(), uint32_t{0});
    for (const KeyedFunction& each : keyed) {
      sorted[places[byteOf(each, byte)]++] = each;
    }
    keyed.swap(sorted);
  }
}

// For code pages whose character order is the order of the bytes.
void SortByKeys(std::span<StkFunction*> list, const CodePage& codePage) {
  const size_t prefix = CommonPrefix(list);
  std::vector<KeyedFunction> keyed;
  keyed.reserve(list.size());
  for (StkFunction* function : list) {
    keyed.push_back({KeyOf(function->name, prefix), function});
  }
  if (list.size() >= kVeryLongList) {
    SortByKey(keyed);
  } else {
    std::ranges::sort(keyed, {}, &KeyedFunction::key);
  }
  for (auto run = keyed.begin(); run != keyed.end();) {
    const auto end = std::find_if(
        run, keyed.end(), [&run](const KeyedFunction& each) { return each.key != run->key; });
    if (end - run > 1) {
      std::sort(run, end, [&codePage](const KeyedFunction& left, const KeyedFunction& right) {
        return CompareNames(*left.function, *right.function, codePage) < 0;
      });
    }
    run = end;
  }
  std::ranges::transform(keyed, list.begin(), &KeyedFunction::function);
}

}  // namespace

void SortByName(std::span<StkFunction*> list, const CodePage& codePage) {
  if (list.size() >= kLongList && codePage.GetKind() != CodePage::Kind::kShiftJis) {
    SortByKeys(list, codePage);
    return;
  }
  std::ranges::sort(list, [&codePage](const StkFunction* left, const StkFunction* right) {
    return CompareNames(*left, *right, codePage) < 0;
  });
}

int InsertByName(StkFunctionList& list, StkFunction& function, const CodePage& codePage) {
  if (std::ranges::find(list, &function) != list.end()) {
    return -1;
  }
  const auto place = std::ranges::find_if(list, [&](const StkFunction* each) {
    return codePage.Compare(each->name, function.name) > 0;
  });
  const auto position = static_cast<int>(place - list.begin());
  list.insert(place, &function);
  return position;
}

int RemoveFunction(StkFunctionList& list, const StkFunction& function) {
  const auto place = std::ranges::find(list, &function);
  if (place == list.end()) {
    return -1;
  }
  const auto position = static_cast<int>(place - list.begin());
  list.erase(place);
  return position;
}

}  // namespace velkor
