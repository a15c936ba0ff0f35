#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace velkor {

inline uint32_t HashExactText(std::string_view text) {
  const uint64_t hash = std::hash<std::string_view>()(text);
  return static_cast<uint32_t>(hash ^ (hash >> 32));
}

// Finds 32-bit values by the hash of what they stand for; four bytes a slot and nothing else, so
// that the owner's records hold the only copy of a name. Values are never removed one by one.
class SlotIndex {
 public:
  bool empty() const { return used_ == 0; }

  // The place of the value for which equal(value) holds; none when there is no such value.
  template <typename Equal>
  const uint32_t* Find(uint32_t hash, Equal equal) const {
    const size_t slot = FindSlot(hash, equal);
    return slot < slots_.size() && slots_[slot] != kFree ? &slots_[slot] : nullptr;
  }

  // The same place; its value may be replaced by another one with the same hash.
  template <typename Equal>
  uint32_t* Find(uint32_t hash, Equal equal) {
    const size_t slot = FindSlot(hash, equal);
    return slot < slots_.size() && slots_[slot] != kFree ? &slots_[slot] : nullptr;
  }

  // A value that equals none that is there. hashOf(value) gives the hash of each value.
  template <typename HashOf>
  void Insert(uint32_t value, HashOf hashOf) {
    if ((used_ + 1) * size_t{4} > slots_.size() * 3) {
      Grow(hashOf);
    }
    Place(value, hashOf(value));
    ++used_;
  }

  void Clear() {
    slots_ = {};
    used_ = 0;
  }

 private:
  static constexpr uint32_t kFree = 0xFFFFFFFF;
  static constexpr size_t kFirstSlots = 32;

  // Slots are a power of two; the multiplication lets every bit of the hash take part.
  size_t Start(uint32_t hash) const {
    return ((hash * uint64_t{0x9E3779B97F4A7C15}) >> 32) & (slots_.size() - 1);
  }
  size_t Next(size_t slot) const { return (slot + 1) & (slots_.size() - 1); }

  template <typename Equal>
  size_t FindSlot(uint32_t hash, Equal equal) const {
    if (slots_.empty()) {
      return 0;
    }
    size_t slot = Start(hash);
    while (slots_[slot] != kFree && !equal(slots_[slot])) {
      slot = Next(slot);
    }
    return slot;
  }

  void Place(uint32_t value, uint32_t hash) {
    size_t slot = Start(hash);
    while (slots_[slot] != kFree) {
      slot = Next(slot);
    }
    slots_[slot] = value;
  }

  template <typename HashOf>
  void Grow(HashOf hashOf) {
    std::vector<uint32_t> old(slots_.empty() ? kFirstSlots : slots_.size() * 2, kFree);
    old.swap(slots_);
    for (const uint32_t value : old) {
      if (value != kFree) {
        Place(value, hashOf(value));
      }
    }
  }

  std::vector<uint32_t> slots_;
  uint32_t used_ = 0;
};

}  // namespace velkor
