#include "core/function_list.h"

#include <algorithm>

#include "core/function.h"

namespace velkor {

void SortByName(StkFunctionList& list, const CodePage& codePage) {
  std::ranges::sort(list, [&codePage](const StkFunction* left, const StkFunction* right) {
    const int order = codePage.Compare(left->name, right->name);
    return order != 0 ? order < 0 : left->index < right->index;
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
