#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/code_page.h"

namespace velkor {

// An ordered list of owned texts without duplicates. Equality is exact, or ignores letter case.
// Add takes constant time on average however long the list is; short lists allocate no index.
class StkStringList {
 public:
  StkStringList() = default;  // exact
  static StkStringList IgnoringCase(const CodePage& codePage);

  // False when an equal text is in the list already.
  bool Add(std::string_view text);
  bool Contains(std::string_view text) const;
  void Clear();

  size_t size() const { return texts_.size(); }
  bool empty() const { return texts_.empty(); }
  const std::string& operator[](size_t i) const { return texts_[i]; }
  auto begin() const { return texts_.begin(); }
  auto end() const { return texts_.end(); }

 private:
  uint32_t Hash(std::string_view text) const;
  bool Equal(std::string_view left, std::string_view right) const;
  size_t Find(std::string_view text) const;
  void Rehash(size_t slots);

  const CodePage* codePage_ = nullptr;  // none: exact
  std::vector<std::string> texts_;
  std::vector<uint32_t> slots_;  // open addressing: index + 1 into texts_, 0 free; empty while short
};

}  // namespace velkor
