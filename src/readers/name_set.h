#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/slot_index.h"

namespace velkor {

// A set of owned names, compared exactly and numbered from 0 in the order of their first insertion.
// All names stand in one piece of memory: a name costs no allocation of its own.
class StkNameSet {
 public:
  // The number of the name, which it is given now when it is new.
  uint32_t Insert(std::string_view name);
  // None when the name is not in the set.
  std::optional<uint32_t> Find(std::string_view name) const;
  bool Contains(std::string_view name) const { return Find(name).has_value(); }
  // Valid until the next Insert.
  std::string_view Name(uint32_t number) const {
    return std::string_view(bytes_).substr(places_[number].start, places_[number].length);
  }
  void Clear();
  uint32_t size() const { return static_cast<uint32_t>(places_.size()); }

 private:
  struct Place {
    size_t start;  // in bytes_
    uint32_t length;
    uint32_t hash;
  };

  std::optional<uint32_t> Find(std::string_view name, uint32_t hash) const;

  std::string bytes_;
  std::vector<Place> places_;
  SlotIndex index_;  // of places_
};

// The names of the runtime helper table, "@" included; filled at most once per project load.
struct RuntimeNameSet {
  StkNameSet names;
  bool loaded = false;

  bool Contains(std::string_view name) const { return names.Contains(name); }
};

}  // namespace velkor
