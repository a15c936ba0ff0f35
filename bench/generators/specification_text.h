#pragma once

#include <cstdint>
#include <string>

namespace velkor::bench {

// A stack size specification file for a chain of rings of this many functions, of which every line
// adjusts one function: a margin, a recursion depth, a callee, or all of them.
std::string SpecificationText(uint32_t functions, uint64_t seed);

}  // namespace velkor::bench
