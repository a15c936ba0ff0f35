#include "readers/gcc/code/code_instruction.h"

namespace velkor {

CodeCondition ConditionOfCode(uint8_t code) {
  switch (code) {
    case 0:
      return CodeCondition::kEqual;
    case 1:
      return CodeCondition::kNotEqual;
    case 2:
      return CodeCondition::kHigherSame;
    case 3:
      return CodeCondition::kLower;
    case 8:
      return CodeCondition::kHigher;
    case 9:
      return CodeCondition::kLowerSame;
    case CodeInstruction::kAlwaysCode:
      return CodeCondition::kAlways;
    default:
      return CodeCondition::kOther;
  }
}

}  // namespace velkor
