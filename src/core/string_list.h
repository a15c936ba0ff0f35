#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/detail/slot_index.h"
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

  const CodePage* codePage_ = nullptr;  // none: exact
  std::vector<std::string> texts_;
  SlotIndex index_;  // of texts_; empty while the list is short
};

}  // namespace velkor
