#include "readers/gcc/code/a64_forms.h"

namespace velkor::a64_forms {

CodeInstruction Plain(CodeOperation operation) {
  CodeInstruction instruction;
  instruction.operation = operation;
  return instruction;
}

CodeInstruction Writing(uint64_t registers) {
  CodeInstruction instruction = Plain(CodeOperation::kOther);
  instruction.writes = registers;
  return instruction;
}

CodeInstruction WritingMemory(uint64_t registers) {
  CodeInstruction instruction = Writing(registers);
  instruction.operation = CodeOperation::kStoreMany;
  instruction.memory.base = CodeMemory::kUnknown;
  return instruction;
}

CodeInstruction Unknown(Encoding /*encoding*/) {
  return Plain(CodeOperation::kUnknown);
}

CodeInstruction Nothing(Encoding /*encoding*/) {
  return Plain(CodeOperation::kOther);
}

CodeInstruction WritesFirst(Encoding encoding) {
  return Writing(Bit(encoding.Register(0)));
}

}  // namespace velkor::a64_forms
