#include "core/detail/function_blocks.h"

#include <utility>

namespace velkor {

StkFunction& FunctionBlocks::Append() {
  if (blocks_.empty() || blocks_.back().size() == BlockSize(blocks_.size() - 1)) {
    std::vector<StkFunction> block;
    block.reserve(BlockSize(blocks_.size()));
    blocks_.push_back(std::move(block));
  }
  std::vector<StkFunction>& block = blocks_.back();
  StkFunction& function = block.emplace_back();
  function.index = static_cast<uint32_t>(FirstIndex(blocks_.size() - 1) + block.size() - 1);
  return function;
}

}  // namespace velkor
