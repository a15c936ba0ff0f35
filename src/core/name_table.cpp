#include "core/name_table.h"

#include <algorithm>

namespace velkor {

namespace {

constexpr size_t kFirstBlockSize = 1024;
constexpr size_t kLargestBlockSize = 65536;

}  // namespace

uint32_t NameTable::Intern(std::string_view text) {
  const uint32_t hash = HashExactText(text);
  if (const uint32_t* found = FindPlace(text, hash); found != nullptr) {
    return *found;
  }
  const auto added = static_cast<uint32_t>(entries_.size());
  entries_.push_back({Keep(text), hash});
  index_.Insert(added, [this](uint32_t i) { return entries_[i].hash; });
  return added;
}

uint32_t NameTable::Find(std::string_view text) const {
  const uint32_t* found = FindPlace(text, HashExactText(text));
  return found != nullptr ? *found : kNone;
}

void NameTable::Clear() {
  index_.Clear();
  entries_ = {};
  blocks_.clear();
  free_ = nullptr;
  freeSize_ = 0;
}

const uint32_t* NameTable::FindPlace(std::string_view text, uint32_t hash) const {
  return index_.Find(
      hash, [&](uint32_t i) { return entries_[i].hash == hash && entries_[i].text == text; });
}

// A text that would waste much of a block gets one of its own.
std::string_view NameTable::Keep(std::string_view text) {
  if (text.size() > freeSize_ && text.size() > kFirstBlockSize / 4) {
    blocks_.push_back(std::make_unique_for_overwrite<char[]>(text.size()));
    text.copy(blocks_.back().get(), text.size());
    return {blocks_.back().get(), text.size()};
  }
  if (text.size() > freeSize_) {
    freeSize_ =
        std::min(kFirstBlockSize << std::min(blocks_.size(), size_t{16}), kLargestBlockSize);
    blocks_.push_back(std::make_unique_for_overwrite<char[]>(freeSize_));
    free_ = blocks_.back().get();
  }
  text.copy(free_, text.size());
  const std::string_view kept(free_, text.size());
  free_ += text.size();
  freeSize_ -= text.size();
  return kept;
}

}  // namespace velkor
