#include "core/string_list.h"

#include <algorithm>

namespace velkor {

namespace {
constexpr size_t kShortList = 16;  // up to here comparing beats hashing
}

StkStringList StkStringList::IgnoringCase(const CodePage& codePage) {
  StkStringList list;
  list.codePage_ = &codePage;
  return list;
}

bool StkStringList::Add(std::string_view text) {
  if (Contains(text)) {
    return false;
  }
  texts_.emplace_back(text);
  if (texts_.size() == kShortList + 1) {
    for (uint32_t i = 0; i <= kShortList; ++i) {
      index_.Insert(i, Hash(texts_[i]));
    }
  } else if (texts_.size() > kShortList) {
    index_.Insert(static_cast<uint32_t>(texts_.size() - 1), Hash(text));
  }
  return true;
}

bool StkStringList::Contains(std::string_view text) const {
  if (index_.empty()) {
    return std::ranges::any_of(texts_, [&](const std::string& each) { return Equal(each, text); });
  }
  return index_.Find(Hash(text), [&](uint32_t i) { return Equal(texts_[i], text); }) != nullptr;
}

void StkStringList::Clear() {
  texts_.clear();
  index_.Clear();
}

uint32_t StkStringList::Hash(std::string_view text) const {
  return codePage_ != nullptr ? codePage_->HashIgnoreCase(text) : HashExactText(text);
}

bool StkStringList::Equal(std::string_view left, std::string_view right) const {
  return codePage_ != nullptr ? codePage_->EqualIgnoreCase(left, right) : left == right;
}

}  // namespace velkor
