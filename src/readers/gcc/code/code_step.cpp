#include "readers/gcc/code/code_step.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <optional>
#include <utility>
#include <vector>

namespace velkor {
namespace {

constexpr uint64_t kSlotNumber = 63;  // in the name of a number: none of a register

uint64_t NameOf(uint64_t address, uint8_t number) {
  return CodeState::NumberName(address, number);
}

}  // namespace

CodeValue CodeStep::Wrapped(uint64_t constant) const {
  return CodeValue::Constant(constant & conventions_.numberMask);
}

CodeValue CodeStep::Get(uint8_t number, const CodeState& state) const {
  return number < state.RegisterCount() ? state.Register(number)
                                        : CodeValue::Number(CodeInstruction::kNone);
}

void CodeStep::Set(uint8_t number, const CodeValue& value, uint64_t /*address*/,
                   CodeState& state) const {
  if (number == conventions_.stackRegister) {
    SetStack(value, state);
  } else if (number < state.RegisterCount()) {
    state.SetRegister(number, value);
  }
}

// What was stored somewhere, or is known before, belongs to another stack. What was computed is
// below by as much as nobody knows.
void CodeStep::SetStack(const CodeValue& value, CodeState& state) const {
  if (value.IsStack()) {
    state.SetRegister(conventions_.stackRegister, value);
  } else if (value.IsGiven() || state.IsOnOtherStack()) {
    state.ChangeStack();
  } else {
    CodeValue below = state.Stack();
    below.isBelow = true;
    state.SetRegister(conventions_.stackRegister, below);
  }
}

void CodeStep::Apply(const CodeInstruction& instruction, uint64_t address, CodeState& state) const {
  switch (instruction.operation) {
    case CodeOperation::kLoad:
    case CodeOperation::kLoadMany:
    case CodeOperation::kJumpMemory:
    case CodeOperation::kCallMemory:
    case CodeOperation::kReturn:
      Load(instruction, address, state);
      break;
    case CodeOperation::kLeave:
      Leave(instruction, address, state);
      break;
    case CodeOperation::kStore:
    case CodeOperation::kStoreMany:
    case CodeOperation::kPushMemory:
      Store(instruction, address, state);
      break;
    case CodeOperation::kChangeStack:
      return state.ChangeStack();
    case CodeOperation::kCompare:
    case CodeOperation::kCompareMemory:
      Compare(instruction, address, state);
      return;
    default:
      Compute(instruction, address, state);
  }
  for (uint64_t left = instruction.writes; left != 0; left &= left - 1) {
    const auto number = static_cast<uint8_t>(std::countr_zero(left));
    Set(number, CodeValue::Number(NameOf(address, number)), address, state);
  }
  if (instruction.setsFlags) {
    state.SetFlags({});
  }
}

void CodeStep::Compute(const CodeInstruction& instruction, uint64_t address,
                       CodeState& state) const {
  const uint8_t target = instruction.target;
  const uint64_t name = NameOf(address, target);
  // What no register holds is equal to nothing else.
  const auto value = [&](uint8_t number) {
    return number < state.RegisterCount() ? state.Register(number) : CodeValue::Number(name);
  };
  const CodeValue source = value(instruction.source);
  const CodeValue index = value(instruction.index);
  const auto immediate = static_cast<uint64_t>(instruction.immediate);
  CodeValue result;
  switch (instruction.operation) {
    case CodeOperation::kSet:
      result = Wrapped(immediate);
      break;
    case CodeOperation::kSetPart:
      result = WithPart(Get(target, state), immediate, instruction.shift, name);
      break;
    case CodeOperation::kSetAddress: {
      const uint64_t place = image_.Place(address) >> instruction.shift << instruction.shift;
      result = Wrapped(place + immediate);
      break;
    }
    case CodeOperation::kCopy:
      result = source;
      break;
    case CodeOperation::kAdd:
      result = Moved(source, instruction.immediate, name);
      break;
    case CodeOperation::kAddScaled:
      result =
          instruction.source == CodeInstruction::kNone
              ? Sum(Wrapped(immediate), index, instruction.shift, name)
              : Moved(Sum(source, index, instruction.shift, name), instruction.immediate, name);
      break;
    case CodeOperation::kAddExtended:
      result = Sum(source, SignExtended(index, instruction.width, name), instruction.shift, name);
      break;
    case CodeOperation::kSubtract:
      result = Difference(source, index, instruction.shift, name);
      break;
    default: {
      const std::optional<CodeValue> bits = WithBits(instruction, source, index, name);
      if (!bits) {
        return;
      }
      result = *bits;
    }
  }
  Set(target, result, address, state);
}

void CodeStep::Compare(const CodeInstruction& instruction, uint64_t address,
                       CodeState& state) const {
  using Comparison = CodeState::Comparison;
  Comparison comparison;
  if (instruction.operation == CodeOperation::kCompareMemory) {
    const Place place = PlaceOf(instruction.memory, address, state);
    if (place.value.IsStack() && !place.value.isBelow) {
      comparison.kind = Comparison::Kind::kSlot;
      comparison.offset = place.value.amount;
      comparison.limit = static_cast<uint64_t>(instruction.immediate);
    }
    return state.SetFlags(comparison);
  }
  CodeValue source = Get(instruction.source, state);
  CodeValue index = instruction.index == CodeInstruction::kNone
                        ? Wrapped(static_cast<uint64_t>(instruction.immediate))
                        : Get(instruction.index, state);
  if (instruction.index == conventions_.stackRegister) {
    std::swap(source, index);
  }
  if (source == state.Stack() && index.IsStack()) {
    comparison.kind = Comparison::Kind::kStack;
    comparison.stack = index;
  } else if (source.IsPlain() && index.IsConstant()) {
    comparison.kind = Comparison::Kind::kNumber;
    comparison.id = source.id;
    comparison.limit = static_cast<uint64_t>(index.amount);
  }
  state.SetFlags(comparison);
}

void CodeStep::ApplyCondition(CodeCondition condition, bool isTaken, uint64_t address,
                              CodeState& state) const {
  const CodeState::Comparison flags = state.Flags();
  const bool isEqual = (condition == CodeCondition::kEqual && isTaken) ||
                       (condition == CodeCondition::kNotEqual && !isTaken);
  if (flags.kind == CodeState::Comparison::Kind::kStack && isEqual) {
    return SetStack(flags.stack, state);
  }
  const bool isAtMost = (condition == CodeCondition::kHigher && !isTaken) ||
                        (condition == CodeCondition::kLowerSame && isTaken);
  const bool isBelow = (condition == CodeCondition::kHigherSame && !isTaken) ||
                       (condition == CodeCondition::kLower && isTaken);
  if (isAtMost || (isBelow && flags.limit != 0)) {
    state.LimitCompared(flags.limit - (isBelow ? 1 : 0), NameOf(address, kSlotNumber));
  }
}

void CodeStep::ApplyReturnOfCall(uint64_t address, CodeState& state) const {
  for (uint8_t i = 0; i < state.RegisterCount(); ++i) {
    if ((conventions_.lostInCalls >> i & 1) != 0) {
      state.SetRegister(i, CodeValue::Number(NameOf(address, i)));
    }
  }
  state.ForgetNumbers();
  state.SetFlags({});
}

void CodeStep::PushReturn(uint64_t address, CodeState& state) const {
  SetStack(Moved(state.Stack(), -int64_t{conventions_.wordSize}, 0), state);
  const CodeValue& stack = state.Stack();
  if (!stack.isBelow) {
    state.StoreSlot(stack.amount, conventions_.wordSize, CodeValue::Constant(address));
  }
}

CodeStep::Place CodeStep::PlaceOf(const CodeMemory& memory, uint64_t address,
                                  const CodeState& state) const {
  Place place{.value = {}, .width = memory.width, .isSigned = memory.isSigned};
  const uint64_t name = NameOf(address, kSlotNumber);
  const bool isIndexed = memory.index != CodeInstruction::kNone;
  if (memory.base == CodeMemory::kUnknown) {
    place.value = CodeValue::Number(name);
    return place;
  }
  if (memory.base == CodeMemory::kHere) {
    const uint8_t shift = isIndexed ? 0 : memory.shift;
    place.value = Wrapped(image_.Place(address) >> shift << shift);
  } else if (memory.base != CodeInstruction::kNone) {
    place.value = Get(memory.base, state);
  } else {
    place.value = Wrapped(static_cast<uint64_t>(memory.displacement));
  }
  if (isIndexed) {
    place.value = Sum(place.value, Get(memory.index, state), memory.shift, name);
  }
  if (memory.base != CodeInstruction::kNone) {
    place.value = Moved(place.value, memory.displacement, name);
  }
  return place;
}

// A word that cannot change.
CodeValue CodeStep::Literal(uint64_t place, const Place& of, uint64_t name) const {
  const std::string_view bytes = image_.ConstantsAt(place);
  if (bytes.size() < of.width) {
    CodeValue loaded = CodeValue::Number(name);
    loaded.isGiven = true;
    return LinkedWord(place).value_or(loaded);
  }
  ByteReader reader(bytes, image_.Order());
  return Wrapped(of.isSigned ? static_cast<uint64_t>(reader.Signed(of.width))
                             : reader.Unsigned(of.width));
}

// A word of the table that the linker has made.
std::optional<CodeValue> CodeStep::LinkedWord(uint64_t address) const {
  const std::optional<LinkerTable::Word> word = image_.Table().At(address);
  if (!word) {
    return std::nullopt;
  }
  CodeValue value = Wrapped(word->value);
  if (!word->import.empty()) {
    value = {};
    value.kind = CodeValue::Kind::kImport;
    value.id = address;
  }
  return value;
}

// offset: of one of several elements.
CodeValue CodeStep::LoadFrom(const Place& place, int64_t offset, uint64_t name,
                             const CodeState& state) const {
  const CodeValue& value = place.value;
  if (value.IsStack()) {
    const CodeValue* slot = value.isBelow ? nullptr : state.Slot(value.amount + offset);
    const bool isWord = place.width == conventions_.wordSize;
    return slot != nullptr && (isWord || slot->IsNumber()) ? *slot : CodeValue::Number(name);
  }
  CodeValue loaded = CodeValue::Number(name);
  loaded.isGiven = true;
  if (value.IsConstant() && place.width == conventions_.wordSize) {
    return LinkedWord(static_cast<uint64_t>(WrappingSum(value.amount, offset))).value_or(loaded);
  }
  if (value.IsNumber() && value.amount != 0 && place.width != 0 &&
      uint64_t{1} << value.shift == place.width) {
    loaded = {};
    loaded.kind = CodeValue::Kind::kTable;
    loaded.id = static_cast<uint64_t>(value.amount);
    loaded.bound = value.bound;
    loaded.width = place.width;
    loaded.isSigned = place.isSigned;
  } else if (place.width < conventions_.wordSize && !place.isSigned && place.width != 0) {
    loaded.bound = (uint64_t{1} << (place.width * 8)) - 1;
  }
  return loaded;
}

void CodeStep::Load(const CodeInstruction& instruction, uint64_t address, CodeState& state) const {
  const Place place = PlaceOf(instruction.memory, address, state);
  const auto element = [&](uint8_t number, int64_t offset) {
    const uint64_t name = NameOf(address, number);
    const bool isLiteral = instruction.memory.base == CodeMemory::kHere && place.value.IsConstant();
    return isLiteral ? Literal(static_cast<uint64_t>(WrappingSum(place.value.amount, offset)),
                               place, name)
                     : LoadFrom(place, offset, name, state);
  };
  if (instruction.operation == CodeOperation::kLoadMany) {
    int64_t offset = 0;
    std::vector<std::pair<uint8_t, CodeValue>> loaded;
    for (uint64_t left = instruction.list; left != 0; left &= left - 1) {
      const auto number = static_cast<uint8_t>(std::countr_zero(left));
      loaded.emplace_back(number, element(number, offset));
      offset += place.width;
    }
    ChangeBase(instruction.memory, address, state);
    for (const auto& [number, value] : loaded) {
      Set(number, value, address, state);
    }
    return;
  }
  const uint8_t target =
      instruction.target == CodeInstruction::kNone ? conventions_.jumpRegister : instruction.target;
  const CodeValue first = element(target, 0);
  const CodeValue second = element(instruction.target2, place.width);
  ChangeBase(instruction.memory, address, state);
  Set(target, first, address, state);
  if (instruction.target2 != CodeInstruction::kNone) {
    Set(instruction.target2, second, address, state);
  }
}

void CodeStep::Leave(const CodeInstruction& instruction, uint64_t address, CodeState& state) const {
  SetStack(Get(instruction.source, state), state);
  CodeInstruction pop = instruction;
  pop.operation = CodeOperation::kLoadMany;
  pop.list = uint64_t{1} << instruction.source;
  pop.memory = {.base = conventions_.stackRegister,
                .width = conventions_.wordSize,
                .baseChange = conventions_.wordSize};
  Load(pop, address, state);
}

void CodeStep::Store(const CodeInstruction& instruction, uint64_t address, CodeState& state) const {
  const CodeMemory& memory = instruction.memory;
  Place place = PlaceOf(memory, address, state);
  std::vector<CodeValue> values;
  if (instruction.operation == CodeOperation::kPushMemory) {
    values.push_back(LoadFrom(place, 0, NameOf(address, kSlotNumber), state));
    SetStack(Moved(state.Stack(), -int64_t{conventions_.wordSize}, 0), state);
    place.value = state.Stack();
  } else if (instruction.operation == CodeOperation::kStoreMany) {
    for (uint64_t left = instruction.list; left != 0; left &= left - 1) {
      values.push_back(Get(static_cast<uint8_t>(std::countr_zero(left)), state));
    }
  } else {
    values.push_back(Get(instruction.source, state));
    if (instruction.index != CodeInstruction::kNone) {
      values.push_back(Get(instruction.index, state));
    }
  }
  if (place.value.IsStack() && !place.value.isBelow) {
    int64_t offset = place.value.amount;
    if (values.empty()) {  // registers that are not followed
      state.StoreSlot(offset, std::max<int64_t>(place.width, std::abs(memory.baseChange)), {});
    }
    for (const CodeValue& value : values) {
      const bool isWord = place.width == conventions_.wordSize;
      // Constants are of variables, which may change in ways that are not seen.
      state.StoreSlot(offset, place.width, isWord && !value.IsConstant() ? value : CodeValue());
      offset += place.width;
    }
  } else {
    state.ForgetNumbers();
  }
  if (instruction.operation != CodeOperation::kPushMemory) {
    ChangeBase(memory, address, state);
  }
}

void CodeStep::ChangeBase(const CodeMemory& memory, uint64_t address, CodeState& state) const {
  if (memory.baseChange != 0 && memory.base != CodeInstruction::kNone &&
      memory.base != CodeMemory::kHere) {
    const CodeValue base = Get(memory.base, state);
    Set(memory.base, Moved(base, memory.baseChange, NameOf(address, memory.base)), address, state);
  }
}

}  // namespace velkor
