#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace velkor {

// Why the size that was read of a function is not certain. The first that was met counts.
enum class CodeDoubt : uint8_t {
  kNone,
  kInstruction,   // one that is not known, or that moves the stack pointer in an unknown way
  kUnbalanced,    // it comes back with another stack pointer
  kGrows,         // a loop moves the stack pointer further and further
  kLeavesCode,    // it goes on where no code is
  kComputedJump,  // not all places are known that it jumps to
  kTooLarge,      // it, or the program, is larger than what is read
};

// What the instructions of one function tell.
struct FunctionCode {
  // From the stack pointer of the caller to the deepest one, in bytes as the compiler's own figure
  // counts them. With isDynamic: without what is not known.
  uint64_t codeBytes = 0;
  uint64_t callFrameBytes = 0;  // the same from call frame information; 0 without it
  std::vector<uint32_t> calls;  // functions of the program, in the order of their places
  std::vector<uint64_t> sites;  // addresses of calls whose targets are not known, ascending
  std::string_view import;  // its name where it is of a shared library; nothing else is known then
  bool isDynamic = false;
  bool usesFloatingPoint = false;  // itself
  bool returns = false;
  CodeDoubt doubt = CodeDoubt::kNone;
  uint64_t doubtAddress = 0;
};

}  // namespace velkor
