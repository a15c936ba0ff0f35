#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "readers/gcc/code/code_image.h"
#include "readers/gcc/code/code_value.h"
#include "readers/gcc/code/function_walk.h"

namespace velkor {

// The targets of a jump by a table, in its order; none where it, or its length, is not known.
std::optional<std::vector<uint64_t>> TargetsOf(const CodeValue& table, const CodeImage& image);

// A table of distances in half words, behind the jump, at an index.
CodeValue TableBehind(const CodeValue& index, uint64_t address, uint8_t width);

// What a helper of Thumb's first set jumps by, called with the index. next: where the call would
// come back to.
CodeValue TableOfHelper(const CodeValue& index, uint64_t next,
                        CodeSurroundings::TableHelper helper);

}  // namespace velkor
