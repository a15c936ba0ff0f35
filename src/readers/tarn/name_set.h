#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "core/name_table.h"

namespace velkor {

// A set of owned names, compared exactly and numbered from 0 in the order of their first insertion.
class StkNameSet {
 public:
  // The number of the name, which it is given now when it is new.
  uint32_t Insert(std::string_view name) { return names_.Intern(name); }
  // None when the name is not in the set.
  std::optional<uint32_t> Find(std::string_view name) const {
    const uint32_t number = names_.Find(name);
    return number == NameTable::kNone ? std::nullopt : std::optional(number);
  }
  bool Contains(std::string_view name) const { return Find(name).has_value(); }
  // Valid as long as the name is in the set.
  std::string_view Name(uint32_t number) const { return names_[number]; }
  const NameTable& Table() const { return names_; }
  void Clear() { names_.Clear(); }
  uint32_t size() const { return names_.size(); }

 private:
  NameTable names_;
};

// The names of the runtime helper table, "@" included.
struct RuntimeNameSet {
  StkNameSet names;
  bool builtIn = false;  // of the table in the program: sizes are to come from the same

  bool Contains(std::string_view name) const { return names.Contains(name); }
};

}  // namespace velkor
