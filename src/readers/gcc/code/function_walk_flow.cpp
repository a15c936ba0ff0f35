#include <algorithm>

#include "readers/gcc/code/function_walk.h"
#include "readers/gcc/code/jump_tables.h"

namespace velkor {
namespace {

using Condition = CodeCondition;
using Operation = CodeOperation;
using StackComparison = CodeState::Comparison::Kind;

}  // namespace

// A jump of any kind. The register of the program counter holds where to, where memory does.
bool FunctionWalk::Jump(Cursor& cursor, const CodeInstruction& instruction) {
  const bool isConditional = instruction.condition != Condition::kAlways;
  CodeState taken = cursor.state;
  if (isConditional) {
    step_.ApplyCondition(instruction.condition, true, cursor.address, taken);
  }
  const CodeValue target = instruction.operation == Operation::kJumpRegister &&
                                   instruction.source != CodeInstruction::kNone
                               ? taken.Register(instruction.source)
                               : CodeValue();
  const CodeValue index =
      instruction.index != CodeInstruction::kNone ? taken.Register(instruction.index) : CodeValue();
  step_.Apply(instruction, cursor.address, taken);
  Block& block = cursor.block->second;
  block.deepest = std::min(block.deepest, taken.Stack().amount);
  switch (instruction.operation) {
    case Operation::kJump: {
      uint64_t base = cursor.address;
      if (instruction.switchesState) {
        base = (base & ~uint64_t{3});
      }
      const uint64_t to = image_.Wrapped(base + static_cast<uint64_t>(instruction.immediate));
      if (!TouchesNextPage(cursor, instruction, to, taken)) {
        JumpTo(cursor, to, taken);
      }
      break;
    }
    case Operation::kJumpTable: {
      const uint64_t behind = Next(image_.Place(cursor.address), instruction);
      if (!JumpByTable(cursor, TableBehind(index, behind, instruction.width), taken)) {
        JumpToValue(cursor, CodeValue(), taken);
      }
      break;
    }
    case Operation::kJumpRegister:
      JumpToValue(cursor, target, taken);
      break;
    default:
      JumpToValue(cursor, taken.Register(conventions_.jumpRegister), taken);
  }
  if (isConditional) {
    step_.ApplyCondition(instruction.condition, false, cursor.address, cursor.state);
    if (instruction.writes != 0) {
      CodeInstruction only = instruction;
      only.operation = Operation::kOther;
      step_.Apply(only, cursor.address, cursor.state);
    }
    NoteState(cursor);
  }
  return isConditional;
}

void FunctionWalk::JumpTo(Cursor& cursor, uint64_t target, const CodeState& state) {
  if (target == range_.start && !IsBalanced(state)) {
    calls_[cursor.address] = range_.function;
    return;
  }
  const uint32_t function =
      target == range_.start ? CodeSurroundings::kNone : around_.FunctionAt(target);
  if (function != CodeSurroundings::kNone) {
    const uint8_t number = RegisterJumpedTo(target);
    return number == CodeInstruction::kNone ? TailCall(cursor.address, function)
                                            : JumpToValue(cursor, state.Register(number), state);
  }
  if (image_.CodeAt(target).empty() || image_.IsData(target)) {
    if (image_.Place(target) != 0) {
      Doubt(CodeDoubt::kLeavesCode, cursor.address);
    }
    return;
  }
  const auto known = blocks_.find(target);
  const bool isInside = target > cursor.block->first && target <= cursor.address;
  if (known == blocks_.end() && isInside && splits_.insert(target).second) {
    return Queue(cursor.block);  // a loop: it is entered from above first
  }
  Reach(target, state, &cursor.block->second);
}

// Whether it is the jump of a loop that moves the stack pointer to an address, page by page, as
// long as it is not equal. The loop goes on where it is, so that one round tells all.
bool FunctionWalk::TouchesNextPage(Cursor& cursor, const CodeInstruction& jump, uint64_t target,
                                   const CodeState& state) {
  const CodeState::Comparison& flags = state.Flags();
  const bool isTest = jump.condition == Condition::kEqual || jump.condition == Condition::kNotEqual;
  if (flags.kind != StackComparison::kStack || !isTest) {
    return false;
  }
  Block& block = cursor.block->second;
  block.touchesPages = flags.stack.isBelow;
  const auto to = blocks_.find(target);
  if (jump.condition == Condition::kEqual || to == blocks_.end() || !to->second.isWalked ||
      state.Stack().amount >= to->second.in.Stack().amount) {
    return false;
  }
  if (flags.stack.isBelow) {
    block.deepest = block.in.Stack().amount;
  }
  return true;
}

void FunctionWalk::JumpToValue(Cursor& cursor, const CodeValue& target, const CodeState& state) {
  if (target.IsReturn()) {
    return Return(cursor, state);
  }
  if (target.IsConstant()) {
    return JumpTo(cursor, static_cast<uint64_t>(target.amount), state);
  }
  if (target.IsImport()) {
    return TailCall(cursor.address, ImportOf(target));
  }
  if (target.IsTable() && JumpByTable(cursor, target, state)) {
    return;
  }
  if (state.IsOnOtherStack()) {
    return;  // to where the other stack was left
  }
  if (range_.isHelper) {
    code_.returns = true;
  } else if (IsBalanced(state) && !state.Stack().isBelow) {
    sites_.insert(image_.Place(cursor.address));
    code_.returns = true;
  } else {
    hasComputedJump_ = true;
  }
}

void FunctionWalk::Return(Cursor& cursor, const CodeState& state) {
  const int64_t popped =
      conventions_.linkRegister == CodeInstruction::kNone ? int64_t{conventions_.wordSize} : 0;
  const bool isBack = state.IsOnOtherStack() ||
                      (!state.Stack().isBelow && state.Stack().amount == StartOffset() + popped);
  if (!isBack && !cursor.block->second.isSwept) {
    Doubt(CodeDoubt::kUnbalanced, cursor.address);
  }
  code_.returns = true;
}

bool FunctionWalk::JumpByTable(Cursor& cursor, const CodeValue& table, const CodeState& state) {
  const std::optional<std::vector<uint64_t>> targets = TargetsOf(table, image_);
  if (!targets || !around_.Spend(targets->size())) {
    return false;
  }
  const uint64_t thumb = cursor.address - image_.Place(cursor.address);
  const bool areOwn = std::ranges::all_of(*targets, [&](uint64_t target) {
    return (IsOwn(target) || blocks_.contains(image_.Place(target) | thumb)) &&
           !image_.IsData(target);
  });
  if (!areOwn) {
    return false;
  }
  for (const uint64_t target : *targets) {
    JumpTo(cursor, image_.Place(target) | thumb, state);
  }
  return true;
}

void FunctionWalk::TailCall(uint64_t place, uint32_t function) {
  calls_[place] = function;
  const CodeSurroundings::Answer answer = around_.Returns(function);
  if (answer == CodeSurroundings::Answer::kNotKnown) {
    WaitFor(function, 0, FirstState());
  }
  code_.returns = code_.returns || answer == CodeSurroundings::Answer::kYes;
}

bool FunctionWalk::Call(Cursor& cursor, const CodeInstruction& instruction) {
  if (!deepest_ || cursor.state.Stack().amount < deepest_->Stack().amount) {
    deepest_ = cursor.state;
  }
  cursor.mayEnd = true;
  if (instruction.operation == Operation::kCall) {
    uint64_t base = cursor.address;
    if (instruction.switchesState) {
      const bool isThumb = base != image_.Place(base);
      base = isThumb ? base & ~uint64_t{3} : base | 1;
    }
    return CallAddress(cursor, instruction, base + static_cast<uint64_t>(instruction.immediate));
  }
  CodeValue target;
  if (instruction.operation == Operation::kCallMemory) {
    CodeState loaded = cursor.state;
    step_.Apply(instruction, cursor.address, loaded);
    target = loaded.Register(conventions_.jumpRegister);
  } else if (instruction.source != CodeInstruction::kNone) {
    target = cursor.state.Register(instruction.source);
  }
  return CallValue(cursor, instruction, target);
}

bool FunctionWalk::CallValue(Cursor& cursor, const CodeInstruction& instruction,
                             const CodeValue& target) {
  if (target.IsConstant()) {
    return CallAddress(cursor, instruction, static_cast<uint64_t>(target.amount));
  }
  if (target.IsImport()) {
    return CallFunction(cursor, ImportOf(target), Next(cursor.address, instruction));
  }
  sites_.insert(image_.Place(cursor.address));
  step_.ApplyReturnOfCall(cursor.address, cursor.state);
  return true;
}

uint32_t FunctionWalk::ImportOf(const CodeValue& value) {
  const std::optional<LinkerTable::Word> word = image_.Table().At(value.id);
  return around_.Imported(word ? word->import : std::string_view());
}

// Where a function only jumps to what a register holds, it stands for an instruction that the
// machine lacks.
uint8_t FunctionWalk::RegisterJumpedTo(uint64_t address) const {
  const CodeInstruction first = decoder_.Decode(image_.CodeAt(address), address);
  const bool isJump = first.operation == Operation::kJumpRegister &&
                      first.condition == Condition::kAlways &&
                      first.source != conventions_.linkRegister;
  return isJump ? first.source : CodeInstruction::kNone;
}

// True: it comes back.
bool FunctionWalk::CallAddress(Cursor& cursor, const CodeInstruction& instruction,
                               uint64_t target) {
  if (image_.Place(target) == 0) {  // a weak function that is not there
    step_.ApplyReturnOfCall(cursor.address, cursor.state);
    return true;
  }
  const CodeSurroundings::TableHelper helper = around_.HelperAt(target);
  const bool isInside = target != range_.start && IsOwn(target) &&
                        around_.FunctionAt(target) == CodeSurroundings::kNone;
  const uint64_t next = Next(cursor.address, instruction);
  if (isInside) {  // a jump that is too far for a jump, or a part that is used from several places
    CodeState state = cursor.state;
    if (conventions_.linkRegister != CodeInstruction::kNone) {
      state.SetRegister(conventions_.linkRegister, CodeValue::Constant(next));
    } else {
      step_.PushReturn(next, state);
    }
    JumpTo(cursor, target, state);
    return false;
  }
  const uint32_t function = around_.CalledFunctionAt(target);
  if (function == CodeSurroundings::kNone) {
    Doubt(CodeDoubt::kLeavesCode, cursor.address);
    return false;
  }
  if (const uint8_t number = RegisterJumpedTo(target); number != CodeInstruction::kNone) {
    return CallValue(cursor, instruction, cursor.state.Register(number));
  }
  if (helper != CodeSurroundings::TableHelper::kNone) {
    calls_[cursor.address] = function;
    return CallHelper(cursor, instruction, helper);
  }
  return CallFunction(cursor, function, next);
}

bool FunctionWalk::CallFunction(Cursor& cursor, uint32_t function, uint64_t next) {
  calls_[cursor.address] = function;
  step_.ApplyReturnOfCall(cursor.address, cursor.state);
  return function == range_.function || ComesBack(cursor, function, next);
}

bool FunctionWalk::CallHelper(Cursor& cursor, const CodeInstruction& instruction,
                              CodeSurroundings::TableHelper helper) {
  const uint64_t next = Next(cursor.address, instruction);
  const CodeValue table = TableOfHelper(cursor.state.Register(0), image_.Place(next), helper);
  if (!JumpByTable(cursor, table, cursor.state)) {
    hasComputedJump_ = true;
  }
  return false;
}

bool FunctionWalk::ComesBack(Cursor& cursor, uint32_t function, uint64_t next) {
  switch (around_.Returns(function)) {
    case CodeSurroundings::Answer::kYes:
      return true;
    case CodeSurroundings::Answer::kNo:
      return false;
    default:
      WaitFor(function, next, cursor.state);
      return false;
  }
}

}  // namespace velkor
