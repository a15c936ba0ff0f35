#include "readers/gcc/code/function_walk.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace velkor {
namespace {

using Condition = CodeCondition;
using Operation = CodeOperation;

constexpr size_t kMostBlocks = 100000;
constexpr uint64_t kMostKept = uint64_t{1} << 20;  // bytes whose instructions are kept
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
  if (range_.hasMoreParts) {
    GiveUp(range_.start);
  }
}

CodeState FunctionWalk::FirstState() const {
  return {conventions_.stackRegister, conventions_.registerCount, conventions_.wordSize};
}

FunctionWalk::~FunctionWalk() {
  around_.TakeBlocks(-static_cast<int64_t>(blocks_.size()));
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

// No more of it is read.
void FunctionWalk::GiveUp(uint64_t address) {
  code_.doubt = CodeDoubt::kTooLarge;
  code_.doubtAddress = image_.Place(address);
  queue_.clear();
  waiters_.clear();
  hasGivenUp_ = true;
}

bool FunctionWalk::IsOwn(uint64_t address) const {
  const uint64_t place = image_.Place(address);
  const auto holds = [&](uint64_t start, uint64_t end) {
    return place >= image_.Place(start) && place < end;
  };
  return holds(range_.start, range_.end) ||
         std::ranges::any_of(range_.parts,
                             [&](const Part& part) { return holds(part.start, part.end); });
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
    WalkBlock(block);
  }
  // What is still to come is other code.
  kept_ = {};
  keptNumbers_ = {};
}

void FunctionWalk::Queue(Blocks::iterator block) {
  if (!block->second.isQueued && !hasGivenUp_) {
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
  if (blocks_.size() >= kMostBlocks || !around_.TakeBlocks(1)) {
    return GiveUp(address);
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
  uint64_t count = 0;
  for (bool goesOn = CanStand(cursor); goesOn; goesOn = CanStand(cursor)) {
    ++count;
    const CodeInstruction& instruction = InstructionAt(cursor);
    goesOn = Execute(cursor, instruction);
    cursor.address += instruction.length;
    block->second.end = std::max(block->second.end, cursor.address);
    if (!goesOn) {
      break;
    }
    if (cursor.conditionalLeft == 0 && IsLeader(cursor)) {
      if (EndConditions(cursor)) {
        Reach(cursor.address, cursor.state, &block->second);
      }
      break;
    }
  }
  if (!around_.Spend(count + 1)) {
    GiveUp(block->first);
  }
  if (!deepest_ || cursor.state.Stack().amount < deepest_->Stack().amount) {
    deepest_ = cursor.state;
  }
}

const CodeInstruction& FunctionWalk::InstructionAt(const Cursor& cursor) {
  const uint64_t offset = cursor.address - range_.start;
  if (offset >= kMostKept) {
    other_ = decoder_.Decode(cursor.Code(image_), cursor.address);
    return other_;
  }
  if (offset >= keptNumbers_.size()) {
    keptNumbers_.resize(static_cast<size_t>(offset) + 1, 0);
  }
  uint32_t& number = keptNumbers_[static_cast<size_t>(offset)];
  if (number == 0) {
    kept_.push_back(decoder_.Decode(cursor.Code(image_), cursor.address));
    number = static_cast<uint32_t>(kept_.size());
  }
  return kept_[number - 1];
}

// Whether another block begins where the cursor has come to.
bool FunctionWalk::IsLeader(const Cursor& cursor) const {
  const auto next = std::next(cursor.block);
  return (next != blocks_.end() && next->first == cursor.address) ||
         (!splits_.empty() && splits_.contains(cursor.address));
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
  cursor.code = image_.CodeAt(address);
  cursor.codeAddress = image_.Place(address);
  if (cursor.code.empty() || image_.IsData(address)) {
    if (!cursor.mayEnd) {
      Doubt(CodeDoubt::kLeavesCode, address);
    }
    return false;
  }
  cursor.limit = std::min({around_.NextFunction(address), image_.NextMark(address),
                           cursor.codeAddress + cursor.code.size()});
  return true;
}

// False: the flow does not go on behind it.
bool FunctionWalk::Execute(Cursor& cursor, const CodeInstruction& decoded) {
  code_.usesFloatingPoint = code_.usesFloatingPoint || decoded.usesFloatingPoint;
  cursor.mayEnd = false;
  const bool isPlain = decoded.conditionCode == CodeInstruction::kAlwaysCode &&
                       decoded.conditionalAfter == 0 && cursor.conditionalLeft == 0;
  if (isPlain) {
    return EndConditions(cursor) && ExecuteOne(cursor, decoded);
  }
  const CodeInstruction instruction = WithCondition(cursor, decoded);
  const bool isJump = instruction.operation == Operation::kJump;
  const bool isConditional = instruction.conditionCode != CodeInstruction::kAlwaysCode &&
                             (!isJump || cursor.conditionCode);
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

void FunctionWalk::WaitFor(uint32_t function, uint64_t next, const CodeState& state) {
  if (hasGivenUp_) {
    return;
  }
  const auto [waiters, isNew] = waiters_.try_emplace(function);
  if (isNew) {
    newWaits_.push_back(function);
  }
  const auto [waiter, isFirst] = waiters->second.try_emplace(next, state);
  if (!isFirst) {
    waiter->second.Join(state, next);
  }
}

void FunctionWalk::Settle(uint32_t function, bool returns) {
  const auto found = waiters_.find(function);
  if (found == waiters_.end()) {
    return;
  }
  const std::map<uint64_t, CodeState> waiters = std::move(found->second);
  waiters_.erase(found);
  for (const auto& [next, state] : waiters) {
    if (returns && next == 0) {
      code_.returns = true;
    } else if (returns) {
      Reach(next, state, nullptr);
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
  SweepRange(range_.start, range_.end, state);
  for (const Part& part : range_.parts) {
    SweepRange(part.start, part.end, state);
  }
}

void FunctionWalk::SweepRange(uint64_t start, uint64_t end, const CodeState& state) {
  uint64_t address = start;
  while (image_.Place(address) < end && !hasGivenUp_) {
    auto block = blocks_.upper_bound(address);
    block = block == blocks_.begin() ? blocks_.end() : std::prev(block);
    if (block != blocks_.end() && block->second.end > address) {
      address = block->second.end;
      continue;
    }
    if (address != start && around_.FunctionAt(address) != CodeSurroundings::kNone) {
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
    const auto reached = blocks_.find(address);
    if (reached == blocks_.end() || !around_.Spend(1)) {
      return GiveUp(address);
    }
    reached->second.isSwept = true;
    Run();
    if (reached->second.end <= address) {
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
  std::unordered_set<uint32_t> known;
  for (const auto& [place, function] : calls_) {
    if (known.insert(function).second) {
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
