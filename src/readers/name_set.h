#pragma once

#include <string>
#include <string_view>
#include <unordered_set>

namespace velkor {

// A set of owned names, compared exactly.
class StkNameSet {
 public:
  // False when the name was there already.
  bool Insert(std::string_view name);
  bool Contains(std::string_view name) const;
  void Clear() { names_.clear(); }
  size_t size() const { return names_.size(); }

 private:
  struct Hash {
    using is_transparent = void;
    size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
  };

  std::unordered_set<std::string, Hash, std::equal_to<>> names_;
};

// The names of the runtime helper table, "@" included; filled at most once per project load.
struct RuntimeNameSet {
  StkNameSet names;
  bool loaded = false;

  bool Contains(std::string_view name) const { return names.Contains(name); }
};

}  // namespace velkor
