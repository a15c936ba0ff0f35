#include "readers/gcc/code/a64_forms.h"

namespace velkor::a64_forms {
namespace {

using Operation = CodeOperation;

CodeInstruction To(Operation operation, int64_t words) {
  CodeInstruction instruction = Plain(operation);
  instruction.immediate = words * 4;
  return instruction;
}

CodeInstruction ToRegister(Operation operation, uint8_t source) {
  CodeInstruction instruction = Plain(operation);
  instruction.source = source == kZero ? uint8_t{kNone} : source;
  return instruction;
}

}  // namespace

CodeInstruction Jump(Encoding encoding) {
  return To(Operation::kJump, encoding.SignedField(0, 26));
}

CodeInstruction Call(Encoding encoding) {
  return To(Operation::kCall, encoding.SignedField(0, 26));
}

// Codes 14 and 15 both mean always.
CodeInstruction JumpIf(Encoding encoding) {
  const auto code = static_cast<uint8_t>(encoding.Field(0, 4));
  CodeInstruction instruction = To(Operation::kJump, encoding.SignedField(5, 19));
  instruction.condition =
      code >= CodeInstruction::kAlwaysCode ? CodeCondition::kAlways : ConditionOfCode(code);
  return instruction;
}

CodeInstruction JumpIfZero(Encoding encoding) {
  CodeInstruction instruction = To(Operation::kJump, encoding.SignedField(5, 19));
  instruction.condition = CodeCondition::kOther;
  return instruction;
}

CodeInstruction JumpIfBit(Encoding encoding) {
  CodeInstruction instruction = To(Operation::kJump, encoding.SignedField(5, 14));
  instruction.condition = CodeCondition::kOther;
  return instruction;
}

CodeInstruction JumpToRegister(Encoding encoding) {
  return ToRegister(Operation::kJumpRegister, encoding.Register(5));
}

CodeInstruction CallRegister(Encoding encoding) {
  return ToRegister(Operation::kCallRegister, encoding.Register(5));
}

CodeInstruction ReturnToLink(Encoding /*encoding*/) {
  return ToRegister(Operation::kJumpRegister, A64_LR);
}

CodeInstruction Stop(Encoding /*encoding*/) {
  return Plain(Operation::kStop);
}

CodeInstruction SystemCall(Encoding /*encoding*/) {
  return Plain(Operation::kSystemCall);
}

// The compiler's own trap has this number; others serve a debugger or a kernel, which may go on.
CodeInstruction Break(Encoding encoding) {
  constexpr uint32_t kTrap = 1000;
  return Plain(encoding.Field(5, 16) == kTrap ? Operation::kStop : Operation::kSystemCall);
}

CodeInstruction Hint(Encoding encoding) {
  constexpr uint32_t kNothing = 0;
  constexpr uint32_t kCheckFeature = 40;
  constexpr uint8_t kChecked = 16;
  const uint32_t number = encoding.Field(5, 7);
  if (number == kCheckFeature) {
    return Writing(Bit(kChecked));
  }
  return Plain(number == kNothing ? Operation::kPadding : Operation::kOther);
}

// A field of the processor's state, one of which chooses the stack pointer.
CodeInstruction WriteState(Encoding encoding) {
  constexpr uint32_t kStackField = 5;
  const bool choosesStack = encoding.Field(16, 3) == 0 && encoding.Field(5, 3) == kStackField;
  CodeInstruction instruction = Plain(choosesStack ? Operation::kChangeStack : Operation::kOther);
  instruction.setsFlags = true;
  return instruction;
}

CodeInstruction ChooseStack(Encoding /*encoding*/) {
  return Plain(Operation::kChangeStack);
}

CodeInstruction SystemOperation(Encoding /*encoding*/) {
  return WritingMemory(0);  // caches, among them ones that are cleared with their memory
}

}  // namespace velkor::a64_forms
