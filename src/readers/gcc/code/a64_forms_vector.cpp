#include "readers/gcc/code/a64_forms.h"

namespace velkor::a64_forms {

// From a vector register into another one.
CodeInstruction ConvertNumber(Encoding encoding) {
  enum : uint32_t { kFromSigned = 2, kFromUnsigned = 3, kMoveOut = 6, kMoveIn = 7 };
  constexpr uint32_t kOfScripts = 3;  // a conversion that sets the flags
  const uint32_t kind = encoding.Field(16, 3);
  const bool isInto = kind == kFromSigned || kind == kFromUnsigned || kind == kMoveIn;
  CodeInstruction instruction = isInto ? Nothing(encoding) : WritesFirst(encoding);
  instruction.setsFlags = kind == kMoveOut && encoding.Field(19, 2) == kOfScripts;
  return instruction;
}

CodeInstruction ConvertFixed(Encoding encoding) {
  constexpr uint32_t kFromSigned = 2;
  return encoding.Field(16, 3) < kFromSigned ? WritesFirst(encoding) : Nothing(encoding);
}

// Vectors whose length is the processor's matter. Those that count their elements write registers;
// a stack pointer that changes by their length is no form.
CodeInstruction Scalable(Encoding encoding) {
  enum : uint32_t { kCounts = 0x04, kTakes = 0x05, kCountsTrue = 0x25 };
  constexpr uint32_t kFirstStore = 0xE0;
  const uint32_t kind = encoding.Field(24, 8);
  const bool hasNumber = encoding.Has(21);
  const bool addsLength = kind == kCounts && hasNumber && encoding.Field(12, 4) == 5;
  const bool writes = addsLength || (kind == kCounts && hasNumber && encoding.Field(14, 2) == 3) ||
                      (kind == kTakes && hasNumber && encoding.Field(13, 3) == 5) ||
                      (kind == kCountsTrue && hasNumber && encoding.Field(14, 2) == 2);
  CodeInstruction instruction = writes ? WritesFirst(encoding) : Nothing(encoding);
  if (addsLength && encoding.RegisterOrStack(0) == A64_SP) {
    instruction = Unknown(encoding);
  } else if (kind >= kFirstStore) {
    instruction = WritingMemory(0);
  }
  instruction.setsFlags = true;
  return instruction;
}

}  // namespace velkor::a64_forms
