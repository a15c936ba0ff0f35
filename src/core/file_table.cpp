#include "core/file_table.h"

namespace velkor {

std::string_view StkFileEntry::BaseName(const CodePage& codePage) const {
  const std::string_view whole = name;
  size_t start = 0;
  for (size_t i = 0; i < whole.size();) {
    const size_t length = codePage.CharLength(whole, i);
    const bool separator = length == 1 && (whole[i] == ':' || whole[i] == '\\' || whole[i] == '/');
    i += length;
    if (separator) {
      start = i;
    }
  }
  return whole.substr(start);
}

const StkFileEntry& StkFileTable::Intern(std::string_view fileName) {
  const uint32_t hash = codePage_.HashIgnoreCase(fileName);
  const uint32_t* found = index_.Find(
      hash, [&](uint32_t i) { return codePage_.EqualIgnoreCase(entries_[i]->name, fileName); });
  if (found != nullptr) {
    return *entries_[*found];
  }
  const StkFileEntry& added = Add(fileName);
  index_.Insert(static_cast<uint32_t>(entries_.size() - 1), hash);
  return added;
}

const StkFileEntry& StkFileTable::Add(std::string_view fileName) {
  entries_.push_back(std::make_unique<StkFileEntry>(StkFileEntry{.name = std::string(fileName)}));
  return *entries_.back();
}

void StkFileTable::Clear() {
  entries_.clear();
  index_.Clear();
}

}  // namespace velkor
