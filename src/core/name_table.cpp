#include "core/name_table.h"

#include <algorithm>
#include <array>

#include "platform/fetch.h"

namespace velkor {

namespace {

constexpr size_t kFirstBlockSize = 1024;
constexpr size_t kLargestBlockSize = 65536;
constexpr size_t kTextsTogether = 16;

}  // namespace

uint32_t NameTable::Intern(std::string_view text, uint32_t hash) {
  if (const uint32_t* found = FindPlace(text, hash); found != nullptr) {
    return *found;
  }
  return Add(Keep(text), hash);
}

uint32_t NameTable::InternLasting(std::string_view text) {
  const uint32_t hash = HashExactText(text);
  const uint32_t* found = FindPlace(text, hash);
  return found != nullptr ? *found : Add(text, hash);
}

uint32_t NameTable::Add(std::string_view text, uint32_t hash) {
  const auto added = static_cast<uint32_t>(entries_.size());
  entries_.push_back({text.data(), static_cast<uint32_t>(text.size()), hash});
  index_.Insert(added, hash);
  return added;
}

std::vector<uint32_t> NameTable::InternAll(const NameTable& other) {
  std::vector<uint32_t> numbers;
  numbers.reserve(other.entries_.size());
  const std::span<const Entry> wanted = other.entries_;
  for (size_t first = 0; first < wanted.size(); first += kTextsTogether) {
    const std::span<const Entry> some =
        wanted.subspan(first, std::min(kTextsTogether, wanted.size() - first));
    FetchAhead(some);
    for (const Entry& entry : some) {
      numbers.push_back(Intern({entry.start, entry.size}, entry.hash));
    }
  }
  return numbers;
}

// Each step asks for what the next one reads.
void NameTable::FetchAhead(std::span<const Entry> wanted) const {
  for (const Entry& entry : wanted) {
    index_.Fetch(entry.hash);
  }
  std::array<const Entry*, kTextsTogether> known{};
  for (size_t i = 0; i < wanted.size(); ++i) {
    if (const uint32_t* found = index_.Find(wanted[i].hash, [](uint32_t) { return true; })) {
      known[i] = &entries_[*found];
      Fetch(known[i]);
    }
  }
  for (const Entry* entry : known) {
    if (entry != nullptr) {
      Fetch(entry->start);
    }
  }
}

uint32_t NameTable::Find(std::string_view text) const {
  const uint32_t* found = FindPlace(text, HashExactText(text));
  return found != nullptr ? *found : kNone;
}

void NameTable::Reserve(size_t count) {
  entries_.reserve(count);
  index_.Reserve(count);
}

void NameTable::Clear() {
  index_.Clear();
  entries_.clear();
  blocks_.clear();
  free_ = nullptr;
  freeSize_ = 0;
}

const uint32_t* NameTable::FindPlace(std::string_view text, uint32_t hash) const {
  return index_.Find(hash, [&](uint32_t i) { return (*this)[i] == text; });
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
