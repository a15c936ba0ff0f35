#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/function.h"

namespace velkor {

// The records of one table. A record never moves: the blocks they stand in are each twice as large
// as the one before and never grow. So the index of a record follows from its address.
class FunctionBlocks {
 public:
  // An empty record, numbered by its index.
  StkFunction& Append();
  void Clear() { blocks_.clear(); }

  // Found without a look into memory.
  StkFunction& At(uint32_t index) {
    const auto block = static_cast<size_t>(std::bit_width(index / kFirstBlockSize + 1) - 1);
    return blocks_[block][index - FirstIndex(block)];
  }

  // Of a record of this table; does not read it, which is what makes it quick.
  uint32_t IndexOf(const StkFunction& function) const {
    for (size_t block = blocks_.size(); block-- > 0;) {
      const size_t offset = Address(&function) - Address(blocks_[block].data());
      if (offset < blocks_[block].size() * sizeof(StkFunction)) {
        return static_cast<uint32_t>(FirstIndex(block) + offset / sizeof(StkFunction));
      }
    }
    return function.index;
  }

 private:
  static constexpr size_t kFirstBlockSize = 1024;

  static size_t BlockSize(size_t block) { return kFirstBlockSize << block; }
  static size_t FirstIndex(size_t block) { return BlockSize(block) - kFirstBlockSize; }
  static uintptr_t Address(const StkFunction* function) {
    return reinterpret_cast<uintptr_t>(function);
  }

  std::vector<std::vector<StkFunction>> blocks_;
};

}  // namespace velkor
