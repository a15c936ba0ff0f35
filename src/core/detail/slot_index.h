#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "platform/fetch.h"

namespace velkor {

inline uint32_t HashExactText(std::string_view text) {
  const uint64_t hash = std::hash<std::string_view>()(text);
  return static_cast<uint32_t>(hash ^ (hash >> 32));
}

// Finds 32-bit values by the hash of what they stand for. A hash stands beside its value, so that
// what has another one is not looked at; the owner's records hold the only copy of a name and need
// not keep its hash. Values are never removed one by one.
class SlotIndex {
 public:
  bool empty() const { return used_ == 0; }

  // The place of the value with that hash for which equal(value) holds; none when there is no such
  // value.
  template <typename Equal>
  const uint32_t* Find(uint32_t hash, Equal equal) const {
    if (slots_.empty()) {
      return nullptr;
    }
    size_t slot = Start(hash);
    while (slots_[slot].value != kFree) {
      if (slots_[slot].hash == hash && equal(slots_[slot].value)) {
        return &slots_[slot].value;
      }
      slot = Next(slot);
    }
    return nullptr;
  }

  // Asks for the memory in which Find begins.
  void Fetch(uint32_t hash) const {
    if (!slots_.empty()) {
      velkor::Fetch(&slots_[Start(hash)]);
    }
  }

  // Room for so many values.
  void Reserve(size_t count) {
    if (!FitIn(count, slots_.size())) {
      size_t size = kFirstSlots;
      while (!FitIn(count, size)) {
        size *= 2;
      }
      Resize(size);
    }
  }

  // A value that equals none that is there.
  void Insert(uint32_t value, uint32_t hash) {
    if (!FitIn(used_ + size_t{1}, slots_.size())) {
      Resize(slots_.empty() ? kFirstSlots : slots_.size() * 2);
    }
    Place({value, hash});
    ++used_;
  }

  // Keeps its memory for values to come, unless there were few for it.
  void Clear() {
    if (used_ * size_t{16} < slots_.size()) {
      slots_ = {};
    } else {
      std::fill(slots_.begin(), slots_.end(), Slot{});
    }
    used_ = 0;
  }

 private:
  static constexpr uint32_t kFree = 0xFFFFFFFF;
  static constexpr size_t kFirstSlots = 32;

  struct Slot {
    uint32_t value = kFree;
    uint32_t hash = 0;
  };

  // Slots are a power of two; the multiplication lets every bit of the hash take part.
  size_t Start(uint32_t hash) const {
    return ((hash * uint64_t{0x9E3779B97F4A7C15}) >> 32) & (slots_.size() - 1);
  }
  size_t Next(size_t slot) const { return (slot + 1) & (slots_.size() - 1); }

  void Place(Slot added) {
    size_t slot = Start(added.hash);
    while (slots_[slot].value != kFree) {
      slot = Next(slot);
    }
    slots_[slot] = added;
  }

  static bool FitIn(size_t count, size_t places) { return count * 4 <= places * 3; }

  void Resize(size_t size) {
    std::vector<Slot> old(size);
    old.swap(slots_);
    for (const Slot& slot : old) {
      if (slot.value != kFree) {
        Place(slot);
      }
    }
  }

  std::vector<Slot> slots_;
  uint32_t used_ = 0;
};

}  // namespace velkor
