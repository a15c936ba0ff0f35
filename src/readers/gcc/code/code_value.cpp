#include "readers/gcc/code/code_value.h"

namespace velkor {

CodeValue CodeValue::Constant(uint64_t value) {
  CodeValue result;
  result.kind = Kind::kConstant;
  result.amount = static_cast<int64_t>(value);
  return result;
}

CodeValue CodeValue::Stack(int64_t offset) {
  CodeValue result;
  result.kind = Kind::kStack;
  result.amount = offset;
  return result;
}

CodeValue CodeValue::Return() {
  CodeValue result;
  result.kind = Kind::kReturn;
  return result;
}

CodeValue CodeValue::Number(uint64_t id, uint64_t bound) {
  CodeValue result;
  result.id = id;
  result.bound = bound;
  return result;
}

CodeValue Joined(const CodeValue& one, const CodeValue& other, uint64_t id) {
  if (one == other) {
    return one;
  }
  CodeValue joined = CodeValue::Number(id);
  joined.isGiven = one.IsGiven() && other.IsGiven();
  if (one.IsNumber() && other.IsNumber() && one.amount == other.amount) {
    joined.amount = one.amount;
    const bool sameBound = one.bound == other.bound && one.shift == other.shift;
    const bool fitsOne = one.id == id && one.shift == other.shift && other.bound <= one.bound;
    if (sameBound || fitsOne) {
      joined.bound = one.bound;
      joined.shift = one.shift;
    }
    if (one.id == other.id && one.shift == other.shift) {
      joined.id = one.id;
      joined.shift = one.shift;
    }
  }
  return joined;
}

}  // namespace velkor
