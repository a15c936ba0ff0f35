#include "ui/views/function_ordering.h"

#include <algorithm>
#include <numeric>

#include "core/function_text.h"
#include "ui/views/function_order.h"

namespace velkor::ui {

namespace {

constexpr uint32_t kLookedAtAtOnce = 2048;

}  // namespace

FunctionOrdering::FunctionOrdering(const StkFunctionTable& functions, const StkBounds* bounds,
                                   FunctionOrderBy by)
    : functions_(functions), bounds_(bounds), by_(by) {}

bool FunctionOrdering::Step() {
  if (by_.cell == FunctionCell::kFile && (CollectFiles() || SortFiles())) {
    return true;
  }
  return CollectKeys() || sorter_->Step();
}

// Comparing paths is dear, and many functions share a file.
bool FunctionOrdering::CollectFiles() {
  if (fileSorter_) {
    return false;
  }
  const uint32_t end = std::min(next_ + kLookedAtAtOnce, functions_.Count());
  for (; next_ < end; ++next_) {
    const StkFileEntry* file = functions_.Functions()[next_]->file;
    if (file && places_.try_emplace(file, 0).second) {
      files_.push_back(file);
    }
  }
  if (next_ == functions_.Count()) {
    fileSorter_.emplace(std::move(files_), IsPathBefore{&functions_.GetCodePage()});
    next_ = 0;
  }
  return true;
}

bool FunctionOrdering::SortFiles() {
  if (places_.empty() || files_.size() == places_.size()) {
    return false;
  }
  if (!fileSorter_->Step()) {
    files_ = fileSorter_->Take();
    for (size_t i = 0; i < files_.size(); ++i) {
      places_[files_[i]] = i + 1;
    }
  }
  return true;
}

bool FunctionOrdering::CollectKeys() {
  if (sorter_) {
    return false;
  }
  keys_.reserve(functions_.Count());
  const uint32_t end = std::min(next_ + kLookedAtAtOnce, functions_.Count());
  for (; next_ < end; ++next_) {
    keys_.push_back(KeyOf(*functions_.Functions()[next_]));
  }
  if (next_ == functions_.Count()) {
    std::vector<uint32_t> all(functions_.Count());
    std::iota(all.begin(), all.end(), 0u);
    sorter_.emplace(std::move(all), IsBefore{this});
  }
  return true;
}

uint64_t FunctionOrdering::KeyOf(const StkFunction& function) const {
  switch (by_.cell) {
    case FunctionCell::kFunction:
      return 0;
    case FunctionCell::kFile:
      return function.file ? places_.at(function.file) : 0;
    case FunctionCell::kLine:
      return function.Place().line;
    case FunctionCell::kBound:
      return bounds_ ? bounds_->Known(function) : 0;
    default:
      break;
  }
  const SortValues values = SortValuesOf(function, 0, functions_.SizeLimit());
  return by_.cell == FunctionCell::kTotal   ? values.total
         : by_.cell == FunctionCell::kFrame ? values.frame
                                            : values.margin;
}

bool FunctionOrdering::Less(uint32_t left, uint32_t right) const {
  if (keys_[left] != keys_[right]) {
    return (keys_[left] < keys_[right]) != by_.descending;
  }
  if (by_.cell == FunctionCell::kFunction) {
    const StkFunctionList& all = functions_.Functions();
    const int order = functions_.GetCodePage().Compare(CName(*all[left]), CName(*all[right]));
    if (order != 0) {
      return (order < 0) != by_.descending;
    }
  }
  return left < right;
}

bool FunctionOrdering::IsPathBefore::operator()(const StkFileEntry* left,
                                                const StkFileEntry* right) const {
  const int order = codePage->CompareIgnoreCase(left->name, right->name);
  return order != 0 ? order < 0 : left->name < right->name;
}

}  // namespace velkor::ui
