#include "core/function_sorting.h"

#include <algorithm>

#include "core/function.h"

namespace velkor {

namespace {

// From here on a list is worth the keys.
constexpr size_t kLongList = 64;

int CompareNames(const StkFunction& left, const StkFunction& right, const CodePage& codePage) {
  const int order = codePage.Compare(left.name, right.name);
  return order != 0 ? order : left.index < right.index ? -1 : 1;
}

// A function with the bytes of its name, as a number, that follow what all names of the list begin
// with: where these differ, neither the functions nor the names need to be read.
struct KeyedFunction {
  uint64_t key;
  StkFunction* function;
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

// For code pages whose character order is the order of the bytes.
void SortByKeys(std::span<StkFunction*> list, const CodePage& codePage) {
  const size_t prefix = CommonPrefix(list);
  std::vector<KeyedFunction> keyed;
  keyed.reserve(list.size());
  for (StkFunction* function : list) {
    keyed.push_back({KeyOf(function->name, prefix), function});
  }
  std::ranges::sort(keyed, [&codePage](const KeyedFunction& left, const KeyedFunction& right) {
    return left.key != right.key ? left.key < right.key
                                 : CompareNames(*left.function, *right.function, codePage) < 0;
  });
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
