#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "core/detail/slot_index.h"

namespace velkor {

// Texts of which each is kept once, numbered from 0 in the order in which they came. Told apart
// exactly. A text stays where it is until the table is cleared.
class NameTable {
 public:
  static constexpr uint32_t kNone = 0xFFFFFFFF;

  uint32_t Intern(std::string_view text) { return Intern(text, HashExactText(text)); }
  // The same of a text of another table, without another look at all of it.
  uint32_t InternFrom(const NameTable& other, uint32_t name) {
    return Intern(other[name], other.entries_[name].hash);
  }
  // The same without a copy: the text stays where it is until the table is cleared.
  uint32_t InternLasting(std::string_view text);
  // The numbers here of all texts of the other table, by their numbers there. Sooner done than one
  // by one: the memory that a text needs is asked for while others are looked up.
  std::vector<uint32_t> InternAll(const NameTable& other);
  // kNone when no such text was interned.
  uint32_t Find(std::string_view text) const;
  std::string_view operator[](uint32_t name) const {
    return {entries_[name].start, entries_[name].size};
  }
  uint32_t size() const { return static_cast<uint32_t>(entries_.size()); }
  // Room for so many texts.
  void Reserve(size_t count);
  // Keeps the memory of the index for texts to come.
  void Clear();

 private:
  struct Entry {
    const char* start;
    uint32_t size;
    uint32_t hash;
  };

  uint32_t Intern(std::string_view text, uint32_t hash);
  uint32_t Add(std::string_view text, uint32_t hash);
  void FetchAhead(std::span<const Entry> wanted) const;
  const uint32_t* FindPlace(std::string_view text, uint32_t hash) const;
  std::string_view Keep(std::string_view text);

  std::vector<std::unique_ptr<char[]>> blocks_;  // each larger than the one before, up to a limit
  char* free_ = nullptr;                         // in the block that is being filled
  size_t freeSize_ = 0;
  std::vector<Entry> entries_;
  SlotIndex index_;  // of entries_
};

}  // namespace velkor
