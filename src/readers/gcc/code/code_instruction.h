#pragma once

#include <cstdint>

namespace velkor {

// What an instruction does, as far as the stack, the flow and the targets of jumps depend on it.
enum class CodeOperation : uint8_t {
  kUnknown,      // not decoded, or writes the stack pointer or the program counter in no known form
  kOther,        // nothing but writing `writes`
  kPadding,      // nothing at all
  kSet,          // target = immediate
  kSetPart,      // target = target with 16 bits from `shift` on replaced by immediate
  kSetAddress,   // target = the instruction's own address + immediate
  kCopy,         // target = source
  kAdd,          // target = source + immediate
  kAddScaled,    // target = source (0 without) + immediate + (index << shift)
  kAddExtended,  // target = source + (the lowest `width` bytes of index, with their sign, << shift)
  kSubtract,     // target = source - (index << shift); without index: - something
  kMask,         // target = source & immediate
  kSetBits,      // target = source | immediate
  kLimit,        // target = source, of which only immediate may remain (zero extension)
  kExtendSign,   // target = source, of which the lowest `width` bytes count
  kMix,          // target = source with bits of index inverted
  kShiftLeft,    // target = source << shift
  kShiftRight,   // target = source >> shift, unsigned
  kLoad,         // target = memory, and target2 = the memory behind it
  kLoadMany,     // the registers of `list`, ascending, from memory on
  kStore,
  kStoreMany,
  kPushMemory,     // memory, pushed
  kLeave,          // the stack pointer becomes source, which is popped then
  kCompare,        // source with immediate, or with index
  kCompareMemory,  // memory with immediate
  kJump,           // to the instruction's own address + immediate
  kCall,
  kJumpRegister,  // to source
  kCallRegister,
  kJumpMemory,  // to what memory holds
  kCallMemory,
  kJumpTable,    // ahead by twice the entry of a table of `width` behind this instruction, at index
  kReturn,       // to what lies on the stack
  kChangeStack,  // to one that is set elsewhere
  kSystemCall,   // may not come back
  kStop,         // does not go on
};

// What a comparison before must have shown.
enum class CodeCondition : uint8_t {
  kAlways,
  kEqual,
  kNotEqual,
  kHigher,  // unsigned
  kHigherSame,
  kLower,
  kLowerSame,
  kOther,
};

// An operand in memory: base + displacement + (index << shift).
struct CodeMemory {
  static constexpr uint8_t kNone = 0xFF;
  static constexpr uint8_t kHere = 0xFE;     // as base: the instruction's own address
  static constexpr uint8_t kUnknown = 0xFD;  // as base: it may be anywhere

  uint8_t base = kNone;
  uint8_t index = kNone;
  uint8_t shift = 0;
  uint8_t width = 0;  // of one element, in bytes
  bool isSigned = false;
  int64_t displacement = 0;
  int32_t baseChange = 0;  // of the base register, afterwards

  bool operator==(const CodeMemory&) const = default;
};

// One instruction, the same for all machines. It does not tell where it stands. Registers have the
// numbers of their machine; bit 63 of register sets is never used.
struct CodeInstruction {
  static constexpr uint8_t kNone = CodeMemory::kNone;
  // Codes of conditions, where instructions that are no jumps have them: with bit 0 changed, a
  // code is the opposite one.
  static constexpr uint8_t kAlwaysCode = 14;

  CodeOperation operation = CodeOperation::kUnknown;
  CodeCondition condition = CodeCondition::kAlways;  // of jumping, or of being executed at all
  uint8_t length = 0;
  uint8_t target = kNone;
  uint8_t target2 = kNone;
  uint8_t source = kNone;
  uint8_t index = kNone;
  uint8_t shift = 0;
  uint8_t width = 0;
  bool setsFlags = false;
  bool usesFloatingPoint = false;
  bool switchesState = false;  // of a call: to the other instruction set
  uint8_t conditionCode = kAlwaysCode;
  uint8_t conditionalAfter = 0;  // so many that follow have the codes in `list`, four bits each
  uint64_t writes = 0;           // registers that get values of which nothing is known
  uint64_t list = 0;
  int64_t immediate = 0;
  CodeMemory memory;

  bool operator==(const CodeInstruction&) const = default;
};

// By the code.
CodeCondition ConditionOfCode(uint8_t code);

}  // namespace velkor
