#include "readers/gcc/code/arm_translation.h"

#include <iterator>
#include <unordered_map>
#include <utility>

#include "readers/gcc/code/arm_forms.h"

namespace velkor {
namespace arm_forms {
namespace {

using Form = void (*)(Translation&);

void Nothing(Translation& t) {
  t.result.operation = CodeOperation::kOther;
}

// May change to a mode with a stack of its own.
void WriteStatus(Translation& t) {
  t.result.operation = CodeOperation::kChangeStack;
}

void SystemCall(Translation& t) {
  t.result.operation = CodeOperation::kSystemCall;
}

void Stop(Translation& t) {
  t.result.operation = CodeOperation::kStop;
}

void Jump(Translation& t) {
  t.result.operation = CodeOperation::kJump;
  t.result.immediate = static_cast<int32_t>(t.Number(0)) - static_cast<int64_t>(t.origin);
}

void JumpIfZero(Translation& t) {
  t.result.operation = CodeOperation::kJump;
  t.result.condition = CodeCondition::kOther;
  t.result.immediate = static_cast<int32_t>(t.Number(1)) - static_cast<int64_t>(t.origin);
}

void Call(Translation& t) {
  Jump(t);
  t.result.operation = CodeOperation::kCall;
}

void CallAndSwitch(Translation& t) {
  if (t.IsRegister(0)) {
    t.result.operation = CodeOperation::kCallRegister;
    t.result.source = t.Register(0);
    return;
  }
  Call(t);
  t.result.switchesState = true;
}

// In ARM's own instructions the register may be the program counter: a change to Thumb.
void JumpExchange(Translation& t) {
  if (t.Register(0) == ARM_PC) {
    t.result.operation = CodeOperation::kJump;
    t.result.switchesState = t.isThumb;
    t.result.immediate = t.Ahead();
    return;
  }
  JumpToRegister(t, t.Register(0));
}

void TableJump(Translation& t, uint8_t width) {
  const arm_op_mem& memory = t.Operand(0).mem;
  t.result.index = NumberOf(static_cast<int>(memory.index));
  t.result.width = width;
  const bool isBehind = NumberOf(static_cast<int>(memory.base)) == ARM_PC;
  t.result.operation = isBehind ? CodeOperation::kJumpTable : CodeOperation::kJumpRegister;
}

void TableOfBytes(Translation& t) {
  TableJump(t, 1);
}
void TableOfHalves(Translation& t) {
  TableJump(t, 2);
}

constexpr std::pair<unsigned, Form> kForms[] = {
    {ARM_INS_ADD, AddForm},
    {ARM_INS_ADDW, AddForm},
    {ARM_INS_ADR, nullptr},
    {ARM_INS_SUB, SubtractForm},
    {ARM_INS_SUBW, SubtractForm},
    {ARM_INS_MOV, Move},
    {ARM_INS_MOVW, Move},
    {ARM_INS_MOVT, MoveTop},
    {ARM_INS_AND, And},
    {ARM_INS_BIC, ClearBits},
    {ARM_INS_ORR, SetBits},
    {ARM_INS_LSL, ShiftLeft},
    {ARM_INS_LSR, ShiftRight},
    {ARM_INS_UXTB, ZeroExtendByte},
    {ARM_INS_UXTH, ZeroExtendHalf},
    {ARM_INS_UBFX, BitField},
    {ARM_INS_CMP, Compare},
    {ARM_INS_CMN, TestOnly},
    {ARM_INS_TST, TestOnly},
    {ARM_INS_TEQ, TestOnly},
    {ARM_INS_LDR, LoadWord},
    {ARM_INS_LDRB, LoadByte},
    {ARM_INS_LDRH, LoadHalf},
    {ARM_INS_LDRSB, LoadSignedByte},
    {ARM_INS_LDRSH, LoadSignedHalf},
    {ARM_INS_LDRD, LoadTwo},
    {ARM_INS_STR, StoreWord},
    {ARM_INS_STRB, StoreByte},
    {ARM_INS_STRH, StoreHalf},
    {ARM_INS_STRD, StoreTwo},
    {ARM_INS_PUSH, Push},
    {ARM_INS_POP, Pop},
    {ARM_INS_LDM, LoadUp},
    {ARM_INS_LDMIB, LoadUpBefore},
    {ARM_INS_LDMDA, LoadDown},
    {ARM_INS_LDMDB, LoadDownBefore},
    {ARM_INS_STM, StoreUp},
    {ARM_INS_STMIB, StoreUpBefore},
    {ARM_INS_STMDA, StoreDown},
    {ARM_INS_STMDB, StoreDownBefore},
    {ARM_INS_VPUSH, VectorPush},
    {ARM_INS_VPOP, VectorPop},
    {ARM_INS_VSTMIA, VectorStoreUp},
    {ARM_INS_VSTMDB, VectorStoreDown},
    {ARM_INS_VLDMIA, VectorLoadUp},
    {ARM_INS_VLDMDB, VectorLoadDown},
    {ARM_INS_B, Jump},
    {ARM_INS_CBZ, JumpIfZero},
    {ARM_INS_CBNZ, JumpIfZero},
    {ARM_INS_BL, Call},
    {ARM_INS_BLX, CallAndSwitch},
    {ARM_INS_BX, JumpExchange},
    {ARM_INS_BXJ, JumpExchange},
    {ARM_INS_TBB, TableOfBytes},
    {ARM_INS_TBH, TableOfHalves},
    {ARM_INS_UDF, Stop},
    {ARM_INS_TRAP, Stop},
    {ARM_INS_SVC, SystemCall},
    {ARM_INS_BKPT, SystemCall},
    {ARM_INS_MSR, WriteStatus},
    {ARM_INS_PLD, Nothing},
    {ARM_INS_PLI, Nothing},
    {ARM_INS_PLDW, Nothing},
};

const std::unordered_map<unsigned, Form>& Forms() {
  static const std::unordered_map<unsigned, Form> forms(std::begin(kForms), std::end(kForms));
  return forms;
}

}  // namespace
}  // namespace arm_forms

CodeInstruction TranslateArm(const cs_insn& decoded, uint64_t origin, bool isThumb) {
  arm_forms::Translation translation{decoded.detail->arm, origin, isThumb, {}};
  const arm_cc condition = translation.arm.cc;
  const bool isConditional = condition != ARM_CC_INVALID && condition != ARM_CC_AL;
  if (isConditional) {
    translation.result.conditionCode = static_cast<uint8_t>(condition - ARM_CC_EQ);
    translation.result.condition = ConditionOfCode(translation.result.conditionCode);
  }
  translation.result.setsFlags = translation.arm.update_flags;
  const auto form = arm_forms::Forms().find(decoded.id);
  if (form == arm_forms::Forms().end() || form->second == nullptr) {
    arm_forms::Other(translation);
  } else {
    form->second(translation);
  }
  translation.result.length = static_cast<uint8_t>(decoded.size);
  return translation.result;
}

}  // namespace velkor
