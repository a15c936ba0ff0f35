#include "readers/gcc/code/x86_translation.h"

#include <algorithm>
#include <unordered_map>

#include "readers/gcc/code/x86_forms.h"

namespace velkor {
namespace x86_forms {
namespace {

using Form = void (*)(Translation&);

void Nothing(Translation& t) {
  t.result.operation = CodeOperation::kPadding;
}

void Stop(Translation& t) {
  t.result.operation = CodeOperation::kStop;
}

void SystemCall(Translation& t) {
  t.result.operation = CodeOperation::kSystemCall;
  t.result.writes = Bit(X86_AX) | Bit(X86_CX) | Bit(X86_11);
}

int64_t Distance(const Translation& t) {
  return t.Number(0) - static_cast<int64_t>(t.origin);
}

void Jump(Translation& t) {
  if (t.IsNumber(0)) {
    t.result.operation = CodeOperation::kJump;
    t.result.immediate = Distance(t);
  } else if (t.IsRegister(0)) {
    t.result.operation = CodeOperation::kJumpRegister;
    t.result.source = t.Register(0);
  } else if (t.IsMemory(0)) {
    TakeMemory(t, 0);
    t.result.operation = CodeOperation::kJumpMemory;
  }
}

void Call(Translation& t) {
  Jump(t);
  if (t.result.operation == CodeOperation::kJump) {
    t.result.operation = CodeOperation::kCall;
  } else if (t.result.operation == CodeOperation::kJumpRegister) {
    t.result.operation = CodeOperation::kCallRegister;
  } else if (t.result.operation == CodeOperation::kJumpMemory) {
    t.result.operation = CodeOperation::kCallMemory;
  }
}

void ConditionalJump(Translation& t, CodeCondition condition) {
  Jump(t);
  t.result.condition = condition;
}

void JumpIf(Translation& t) {
  ConditionalJump(t, CodeCondition::kOther);
}
void JumpIfEqual(Translation& t) {
  ConditionalJump(t, CodeCondition::kEqual);
}
void JumpIfNotEqual(Translation& t) {
  ConditionalJump(t, CodeCondition::kNotEqual);
}
void JumpIfHigher(Translation& t) {
  ConditionalJump(t, CodeCondition::kHigher);
}
void JumpIfHigherSame(Translation& t) {
  ConditionalJump(t, CodeCondition::kHigherSame);
}
void JumpIfLower(Translation& t) {
  ConditionalJump(t, CodeCondition::kLower);
}
void JumpIfLowerSame(Translation& t) {
  ConditionalJump(t, CodeCondition::kLowerSame);
}

void Loop(Translation& t) {
  JumpIf(t);
  t.result.writes = Bit(X86_CX);
}

void Return(Translation& t) {
  t.result.operation = CodeOperation::kReturn;
  t.result.memory = {.base = X86_SP, .width = kWord, .baseChange = kWord};
  if (t.IsNumber(0)) {
    t.result.memory.baseChange += static_cast<int32_t>(t.Number(0));
  }
}

const std::unordered_map<unsigned, Form>& Forms() {
  static const std::unordered_map<unsigned, Form> kForms = {
      {X86_INS_MOV, Move},
      {X86_INS_MOVABS, Move},
      {X86_INS_MOVZX, MoveZero},
      {X86_INS_MOVSX, MoveSign},
      {X86_INS_MOVSXD, MoveSign},
      {X86_INS_CDQE, ExtendAccumulator},
      {X86_INS_LEA, LoadAddress},
      {X86_INS_ADD, Add},
      {X86_INS_SUB, Subtract},
      {X86_INS_AND, And},
      {X86_INS_XOR, ExclusiveOr},
      {X86_INS_SHL, ShiftLeft},
      {X86_INS_SHR, ShiftRight},
      {X86_INS_PUSH, Push},
      {X86_INS_POP, Pop},
      {X86_INS_PUSHFQ, PushFlags},
      {X86_INS_POPFQ, PopFlags},
      {X86_INS_LEAVE, Leave},
      {X86_INS_CMP, Compare},
      {X86_INS_NOP, Nothing},
      {X86_INS_FNOP, Nothing},
      {X86_INS_UD2, Stop},
      {X86_INS_INT3, Stop},
      {X86_INS_IRETQ, Stop},
      {X86_INS_SYSRET, Stop},
      {X86_INS_SYSEXIT, Stop},
      {X86_INS_HLT, SystemCall},
      {X86_INS_INT, SystemCall},
      {X86_INS_SYSCALL, SystemCall},
      {X86_INS_JMP, Jump},
      {X86_INS_CALL, Call},
      {X86_INS_RET, Return},
      {X86_INS_JA, JumpIfHigher},
      {X86_INS_JAE, JumpIfHigherSame},
      {X86_INS_JB, JumpIfLower},
      {X86_INS_JBE, JumpIfLowerSame},
      {X86_INS_JE, JumpIfEqual},
      {X86_INS_JNE, JumpIfNotEqual},
      {X86_INS_JG, JumpIf},
      {X86_INS_JGE, JumpIf},
      {X86_INS_JL, JumpIf},
      {X86_INS_JLE, JumpIf},
      {X86_INS_JO, JumpIf},
      {X86_INS_JNO, JumpIf},
      {X86_INS_JP, JumpIf},
      {X86_INS_JNP, JumpIf},
      {X86_INS_JS, JumpIf},
      {X86_INS_JNS, JumpIf},
      {X86_INS_JCXZ, JumpIf},
      {X86_INS_JECXZ, JumpIf},
      {X86_INS_JRCXZ, JumpIf},
      {X86_INS_LOOP, Loop},
      {X86_INS_LOOPE, Loop},
      {X86_INS_LOOPNE, Loop},
      {X86_INS_XBEGIN, JumpIf},
  };
  return kForms;
}

constexpr uint64_t kTests = X86_EFLAGS_TEST_OF | X86_EFLAGS_TEST_SF | X86_EFLAGS_TEST_ZF |
                            X86_EFLAGS_TEST_PF | X86_EFLAGS_TEST_CF | X86_EFLAGS_TEST_NT |
                            X86_EFLAGS_TEST_DF | X86_EFLAGS_TEST_RF | X86_EFLAGS_TEST_IF |
                            X86_EFLAGS_TEST_TF | X86_EFLAGS_TEST_AF;

bool IsVector(x86_reg number) {
  return (number >= X86_REG_XMM0 && number <= X86_REG_ZMM31) ||
         (number >= X86_REG_MM0 && number <= X86_REG_MM7) ||
         (number >= X86_REG_ST0 && number <= X86_REG_ST7);
}

bool UsesVectors(const Translation& t) {
  bool uses = false;
  for (size_t i = 0; i < t.Count(); ++i) {
    uses = uses || (t.IsRegister(i) && IsVector(t.Operand(i).reg));
  }
  for (uint8_t i = 0; i < t.decoded.detail->groups_count; ++i) {
    uses = uses || t.decoded.detail->groups[i] == X86_GRP_FPU;
  }
  return uses;
}

}  // namespace
}  // namespace x86_forms

CodeInstruction TranslateX86(const cs_insn& decoded, uint64_t origin) {
  x86_forms::Translation t{decoded, decoded.detail->x86, origin, {}};
  const auto form = x86_forms::Forms().find(decoded.id);
  t.result.setsFlags = (t.x86.eflags & ~x86_forms::kTests) != 0;
  if (form != x86_forms::Forms().end()) {
    form->second(t);
  } else {
    x86_forms::Other(t);
  }
  const bool isControl =
      std::any_of(decoded.detail->groups, decoded.detail->groups + decoded.detail->groups_count,
                  [](uint8_t group) {
                    return group == X86_GRP_JUMP || group == X86_GRP_CALL || group == X86_GRP_RET ||
                           group == X86_GRP_IRET || group == X86_GRP_BRANCH_RELATIVE;
                  });
  if (isControl && form == x86_forms::Forms().end()) {
    t.result.operation = CodeOperation::kUnknown;
  }
  t.result.length = static_cast<uint8_t>(decoded.size);
  t.result.usesFloatingPoint = x86_forms::UsesVectors(t);
  return t.result;
}

}  // namespace velkor
