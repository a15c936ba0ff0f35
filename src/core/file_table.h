#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/detail/slot_index.h"
#include "platform/code_page.h"

namespace velkor {

// A C source file of the analysis. Two functions are in the same file exactly when their entries
// are the same object.
struct StkFileEntry {
  std::string name;  // as the module that came first gives it

  // What stands after the last ":", "\" or "/".
  std::string_view BaseName(const CodePage& codePage) const;
};

// The C source file names met in modules, told apart ignoring letter case. Owns its entries until
// Clear. Lookups stay constant on average: the number of chains grows with the entries.
class StkFileTable {
 public:
  explicit StkFileTable(const CodePage& codePage) : codePage_(codePage) {}

  const StkFileEntry& Intern(std::string_view fileName);
  // A new entry, whatever other ones are called.
  const StkFileEntry& Add(std::string_view fileName);
  void Clear();
  size_t size() const { return entries_.size(); }

 private:
  const CodePage& codePage_;
  std::vector<std::unique_ptr<StkFileEntry>> entries_;
  SlotIndex index_;  // of those that were interned
};

}  // namespace velkor
