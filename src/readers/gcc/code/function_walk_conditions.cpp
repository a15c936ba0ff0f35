#include <utility>

#include "readers/gcc/code/function_walk.h"

namespace velkor {

// With the code that an instruction before it may have given it.
CodeInstruction FunctionWalk::WithCondition(Cursor& cursor,
                                            const CodeInstruction& instruction) const {
  CodeInstruction conditional = instruction;
  if (cursor.conditionalLeft > 0) {
    --cursor.conditionalLeft;
    conditional.conditionCode = static_cast<uint8_t>(cursor.conditionCodes & 15);
    conditional.condition = ConditionOfCode(conditional.conditionCode);
    cursor.conditionCodes >>= 4;
    const bool isComparison = instruction.operation == CodeOperation::kCompare;
    conditional.setsFlags = instruction.setsFlags && (isComparison || instruction.length == 4);
  }
  if (instruction.conditionalAfter != 0) {
    cursor.conditionalLeft = instruction.conditionalAfter;
    cursor.conditionCodes = instruction.list;
    conditional.list = 0;
  }
  return conditional;
}

// Executes it where its condition holds. What follows with the same condition, or its opposite, is
// executed in the same cases, or in the others.
bool FunctionWalk::ExecuteConditional(Cursor& cursor, const CodeInstruction& instruction) {
  const uint8_t code = instruction.conditionCode;
  if (cursor.conditionCode && *cursor.conditionCode != code &&
      *cursor.conditionCode != (code ^ 1) && !EndConditions(cursor)) {
    return false;
  }
  if (!cursor.conditionCode) {
    cursor.conditionCode = code;
    cursor.otherState = cursor.state;
    cursor.isStateGone = false;
    step_.ApplyCondition(instruction.condition, true, cursor.address, cursor.state);
    step_.ApplyCondition(instruction.condition, false, cursor.address, *cursor.otherState);
  }
  CodeInstruction executed = instruction;
  executed.condition = CodeCondition::kAlways;
  executed.conditionCode = CodeInstruction::kAlwaysCode;
  if (*cursor.conditionCode == code) {
    cursor.isStateGone = cursor.isStateGone || !ExecuteOne(cursor, executed);
  } else if (cursor.otherState) {
    std::swap(cursor.state, *cursor.otherState);
    const bool goesOn = ExecuteOne(cursor, executed);
    std::swap(cursor.state, *cursor.otherState);
    if (!goesOn) {
      cursor.otherState.reset();
    }
  }
  const bool changesFlags = instruction.setsFlags ||
                            instruction.operation == CodeOperation::kCompare ||
                            instruction.operation == CodeOperation::kCall ||
                            instruction.operation == CodeOperation::kCallRegister;
  if (cursor.isStateGone && !cursor.otherState) {
    return false;
  }
  return !changesFlags || EndConditions(cursor);
}

// From here on it does not matter whether the condition held. False: the flow does not go on.
bool FunctionWalk::EndConditions(Cursor& cursor) {
  if (!cursor.conditionCode) {
    return true;
  }
  cursor.conditionCode.reset();
  std::optional<CodeState> other = std::exchange(cursor.otherState, std::nullopt);
  if (cursor.isStateGone) {
    cursor.isStateGone = false;
    if (!other) {
      return false;
    }
    cursor.state = *std::move(other);
  } else if (other) {
    cursor.state.Join(*other, cursor.address);
  }
  return true;
}

}  // namespace velkor
