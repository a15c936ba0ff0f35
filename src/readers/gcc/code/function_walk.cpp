#include "readers/gcc/code/function_walk.h"

#include <algorithm>
#include <utility>

namespace velkor {
namespace {

using Condition = CodeCondition;
using Operation = CodeOperation;

constexpr size_t kMostBlocks = 100000;
constexpr uint16_t kMostDeepenings = 32;

}  // namespace

FunctionWalk::FunctionWalk(const CodeImage& image, InstructionDecoder& decoder,
                           CodeSurroundings& around, const Range& range)
    : image_(image),
      decoder_(decoder),
      around_(around),
      conventions_(decoder.Conventions()),
      step_(image, decoder.Conventions()),
      range_(range) {
  CodeState first = FirstState();
  if (conventions_.linkRegister != CodeInstruction::kNone) {
    first.SetRegister(conventions_.linkRegister, CodeValue::Return());
  } else {
    first.SetRegister(conventions_.stackRegister, CodeValue::Stack(StartOffset()));
    first.StoreSlot(StartOffset(), conventions_.wordSize, CodeValue::Return());
  }
  Reach(range_.start, first, nullptr);
}

CodeState FunctionWalk::FirstState() const {
  return {conventions_.stackRegister, conventions_.registerCount, conventions_.wordSize};
}

int64_t FunctionWalk::StartOffset() const {
  const bool isPushed = conventions_.linkRegister == CodeInstruction::kNone;
  return isPushed ? -int64_t{conventions_.wordSize} : 0;
}

void FunctionWalk::Doubt(CodeDoubt doubt, uint64_t address) {
  if (code_.doubt == CodeDoubt::kNone) {
    code_.doubt = doubt;
    code_.doubtAddress = image_.Place(address);
  }
}

bool FunctionWalk::IsMuch() const {
  return blocks_.size() > kMostBlocks;
}

bool FunctionWalk::IsOwn(uint64_t address) const {
  const uint64_t place = image_.Place(address);
  return place >= image_.Place(range_.start) && place < range_.end;
}

bool FunctionWalk::IsBalanced(const CodeState& state) const {
  return state.IsOnOtherStack() || state.Stack().amount == StartOffset();
}

void FunctionWalk::Run() {
  while (!queue_.empty()) {
    const uint64_t address = queue_.back();
    queue_.pop_back();
    const auto block = blocks_.find(address);
    block->second.isQueued = false;
    if (IsMuch()) {
      Doubt(CodeDoubt::kTooLarge, address);
      continue;
    }
    WalkBlock(block);
  }
}

void FunctionWalk::Queue(Blocks::iterator block) {
  if (!block->second.isQueued) {
    block->second.isQueued = true;
    queue_.push_back(block->first);
  }
}

// from: the block that goes there, none for the function's start and what was not reached.
void FunctionWalk::Reach(uint64_t address, const CodeState& state, Block* from) {
  const auto next = blocks_.lower_bound(address);
  if (next != blocks_.end() && next->first == address) {
    return JoinInto(next, state, from);
  }
  if (next != blocks_.begin()) {
    const auto before = std::prev(next);
    if (before->second.isWalked && before->second.end > address) {
      Queue(before);  // it ends here from now on
    }
  }
  const auto block = blocks_.emplace_hint(next, address, Block{.in = state});
  block->second.isSwept = from != nullptr && from->isSwept;
  block->second.deepest = state.Stack().amount;
  Queue(block);
}

void FunctionWalk::JoinInto(Blocks::iterator block, const CodeState& state, Block* from) {
  Block& to = block->second;
  const CodeValue before = to.in.Stack();
  CodeState joined = state;
  if (to.touchesPages && from != nullptr && joined.Stack().amount < before.amount) {
    from->deepest = from->in.Stack().amount;
    joined.SetRegister(conventions_.stackRegister, before);
  }
  if (to.deepenings >= kMostDeepenings && joined.Stack().amount < before.amount) {
    Doubt(CodeDoubt::kGrows, block->first);
    joined.SetRegister(conventions_.stackRegister, before);
  }
  if (to.in.Join(joined, block->first)) {
    to.isSwept = to.isSwept || (from != nullptr && from->isSwept);
    const bool isDeeper = to.in.Stack().amount < before.amount;
    to.deepenings = static_cast<uint16_t>(to.deepenings + (isDeeper ? 1 : 0));
    Queue(block);
  }
}

void FunctionWalk::NoteState(Cursor& cursor) {
  const CodeValue& stack = cursor.state.Stack();
  Block& block = cursor.block->second;
  block.deepest = std::min(block.deepest, stack.amount);
  code_.isDynamic = code_.isDynamic || stack.isBelow;
}

void FunctionWalk::WalkBlock(Blocks::iterator block) {
  Cursor cursor(block);
  block->second.isWalked = true;
  block->second.deepest = cursor.state.Stack().amount;
  NoteState(cursor);
  auto next = std::next(block);
  bool goesOn = CanStand(cursor);
  while (goesOn) {
    const CodeInstruction instruction =
        decoder_.Decode(image_.CodeAt(cursor.address), cursor.address);
    if (!around_.Spend(1)) {
      Doubt(CodeDoubt::kTooLarge, cursor.address);
      break;
    }
    const uint64_t address = cursor.address;
    goesOn = Execute(cursor, instruction);
    cursor.address = Next(address, instruction);
    block->second.end = std::max(block->second.end, cursor.address);
    next = std::next(block);  // new ones may have come between
    const bool isInside = cursor.conditionalLeft != 0;
    const bool isNext = (next != blocks_.end() && next->first == cursor.address) ||
                        (!splits_.empty() && splits_.contains(cursor.address));
    if (goesOn && !isInside && isNext) {
      if (EndConditions(cursor)) {
        Reach(cursor.address, cursor.state, &block->second);
      }
      break;
    }
    goesOn = goesOn && CanStand(cursor);
  }
  if (!deepest_ || cursor.state.Stack().amount < deepest_->Stack().amount) {
    deepest_ = cursor.state;
  }
}

// Whether the flow may come to a place from the one before it.
bool FunctionWalk::CanStand(Cursor& cursor) {
  const uint64_t address = cursor.address;
  if (image_.Place(address) < cursor.limit) {
    return true;
  }
  const bool isFirst = address == range_.start;
  const uint32_t function = isFirst ? CodeSurroundings::kNone : around_.FunctionAt(address);
  if (function != CodeSurroundings::kNone && address != cursor.block->first) {
    if (!cursor.mayEnd) {
      TailCall(address, function);
    }
    return false;
  }
  const std::string_view code = image_.CodeAt(address);
  if (code.empty() || image_.IsData(address)) {
    if (!cursor.mayEnd) {
      Doubt(CodeDoubt::kLeavesCode, address);
    }
    return false;
  }
  cursor.limit = std::min({around_.NextFunction(address), image_.NextMark(address),
                           image_.Place(address) + code.size()});
  return true;
}

// False: the flow does not go on behind it.
bool FunctionWalk::Execute(Cursor& cursor, const CodeInstruction& decoded) {
  code_.usesFloatingPoint = code_.usesFloatingPoint || decoded.usesFloatingPoint;
  const CodeInstruction instruction = WithCondition(cursor, decoded);
  cursor.mayEnd = false;
  const bool isJump = instruction.operation == Operation::kJump;
  const bool isConditional =
      instruction.conditionCode != CodeInstruction::kAlwaysCode && (!isJump || cursor.code);
  return isConditional ? ExecuteConditional(cursor, instruction)
                       : EndConditions(cursor) && ExecuteOne(cursor, instruction);
}

bool FunctionWalk::ExecuteOne(Cursor& cursor, const CodeInstruction& instruction) {
  switch (instruction.operation) {
    case Operation::kUnknown:
      Doubt(CodeDoubt::kInstruction, cursor.address);
      return false;
    case Operation::kStop:
      return false;
    case Operation::kSystemCall:
      cursor.mayEnd = true;
      return true;
    case Operation::kJump:
    case Operation::kJumpRegister:
    case Operation::kJumpMemory:
    case Operation::kJumpTable:
    case Operation::kReturn:
      return Jump(cursor, instruction);
    case Operation::kCall:
    case Operation::kCallRegister:
    case Operation::kCallMemory:
      return Call(cursor, instruction);
    default:
      break;
  }
  const bool leaves = instruction.operation == Operation::kLoadMany &&
                      (instruction.list >> conventions_.jumpRegister & 1) != 0;
  if (leaves) {
    return Jump(cursor, instruction);
  }
  step_.Apply(instruction, cursor.address, cursor.state);
  NoteState(cursor);
  return true;
}

std::vector<uint32_t> FunctionWalk::Waiting() const {
  std::vector<uint32_t> functions;
  for (const auto& [function, waiters] : waiters_) {
    functions.push_back(function);
  }
  return functions;
}

void FunctionWalk::Settle(uint32_t function, bool returns) {
  const auto found = waiters_.find(function);
  if (found == waiters_.end()) {
    return;
  }
  const std::vector<Waiter> waiters = std::move(found->second);
  waiters_.erase(found);
  for (const Waiter& waiter : waiters) {
    if (returns && waiter.next == 0) {
      code_.returns = true;
    } else if (returns) {
      Reach(waiter.next, waiter.state, nullptr);
    }
  }
}

void FunctionWalk::Sweep() {
  isSwept_ = true;
  if (!deepest_ || !range_.isWhole || !TellsCodeFromData() || code_.doubt != CodeDoubt::kNone) {
    return;
  }
  CodeState state = *deepest_;
  for (uint8_t i = 0; i < state.RegisterCount(); ++i) {
    if (!state.Register(i).IsStack() && !state.Register(i).IsReturn()) {
      state.SetRegister(i, CodeValue::Number(CodeState::NumberName(range_.start, i)));
    }
  }
  state.SetFlags({});
  uint64_t address = range_.start;
  while (image_.Place(address) < range_.end) {
    auto block = blocks_.upper_bound(address);
    block = block == blocks_.begin() ? blocks_.end() : std::prev(block);
    if (block != blocks_.end() && block->second.end > address) {
      address = block->second.end;
      continue;
    }
    if (address != range_.start && around_.FunctionAt(address) != CodeSurroundings::kNone) {
      break;
    }
    const uint64_t thumb = address & (image_.Place(1) == 0 ? 1 : 0);
    if (image_.IsData(address)) {
      address = image_.NextMark(address) | thumb;
      continue;
    }
    const std::string_view bytes = image_.CodeAt(address);
    if (bytes.empty()) {
      break;
    }
    const CodeInstruction instruction = decoder_.Decode(bytes, address);
    if (instruction.operation == Operation::kPadding) {
      address += instruction.length;
      continue;
    }
    Reach(address, state, nullptr);
    blocks_.find(address)->second.isSwept = true;
    Run();
    if (blocks_.find(address)->second.end <= address) {
      address += instruction.length;  // nothing that can be executed
    }
  }
}

FunctionCode FunctionWalk::Result() const {
  FunctionCode code = code_;
  int64_t deepest = StartOffset();
  for (const auto& [address, block] : blocks_) {
    deepest = std::min(deepest, block.deepest);
  }
  code.codeBytes = static_cast<uint64_t>(-deepest);
  for (const auto& [place, function] : calls_) {
    if (std::ranges::find(code.calls, function) == code.calls.end()) {
      code.calls.push_back(function);
    }
  }
  code.sites.assign(sites_.begin(), sites_.end());
  const bool isRead = isSwept_ && range_.isWhole && TellsCodeFromData();
  if (hasComputedJump_ && !isRead && code.doubt == CodeDoubt::kNone) {
    code.doubt = CodeDoubt::kComputedJump;
  }
  code.usesFloatingPoint = code.usesFloatingPoint || code.doubt != CodeDoubt::kNone;
  code.returns = code.returns || code.doubt != CodeDoubt::kNone;
  return code;
}

}  // namespace velkor
