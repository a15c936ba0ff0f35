#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "readers/gcc/code/code_image.h"
#include "readers/gcc/code/code_state.h"
#include "readers/gcc/code/code_step.h"
#include "readers/gcc/code/function_code.h"
#include "readers/gcc/code/instruction_decoder.h"

namespace velkor {

// What a walk through one function asks of the program around it. Functions are numbers.
class CodeSurroundings {
 public:
  static constexpr uint32_t kNone = UINT32_MAX;
  enum class Answer : uint8_t { kYes, kNo, kNotKnown };
  // The helpers of Thumb's first set that jump by a table behind the call.
  enum class TableHelper : uint8_t { kNone, kBytes, kSignedBytes, kHalves, kSignedHalves, kWords };

  virtual ~CodeSurroundings() = default;
  // The function that begins there, kNone otherwise.
  virtual uint32_t FunctionAt(uint64_t address) const = 0;
  // The same; where code is called that has no name, it becomes a function.
  virtual uint32_t CalledFunctionAt(uint64_t address) = 0;
  // Where the next one begins, behind the address.
  virtual uint64_t NextFunction(uint64_t address) const = 0;
  // The function of a shared library.
  virtual uint32_t Imported(std::string_view name) = 0;
  virtual Answer Returns(uint32_t function) const = 0;
  virtual TableHelper HelperAt(uint64_t address) const = 0;
  // Takes instructions from what may be read of the whole program. False: that is used up.
  virtual bool Spend(uint64_t instructions) = 0;
  // The same of the memory for blocks of code; a negative count gives back.
  virtual bool TakeBlocks(int64_t count) = 0;
};

// Follows the flow of one function, and what is known along it, to a fixed point. One thread.
class FunctionWalk {
 public:
  // Code of the function that is kept elsewhere.
  struct Part {
    uint64_t start = 0;  // with bit 0 for Thumb
    uint64_t end = 0;
  };
  struct Range {
    uint32_t function = 0;
    uint64_t start = 0;  // with bit 0 for Thumb
    uint64_t end = 0;    // of its own code, behind the last byte
    bool isHelper = false;
    bool isWhole = true;        // all between start and end belongs to it
    std::vector<Part> parts;    // all of each belongs to it, too
    bool hasMoreParts = false;  // than are known here
  };

  FunctionWalk(const CodeImage& image, InstructionDecoder& decoder, CodeSurroundings& around,
               const Range& range);
  ~FunctionWalk();
  FunctionWalk(const FunctionWalk&) = delete;
  FunctionWalk& operator=(const FunctionWalk&) = delete;

  // Goes on as far as it is known what the called functions do.
  void Run();
  // Functions of which it must be known whether they return: any, and those since last asked.
  bool IsWaiting() const { return !waiters_.empty(); }
  std::vector<uint32_t> TakeNewWaits() { return std::exchange(newWaits_, {}); }
  // It is known now. Run() is to follow.
  void Settle(uint32_t function, bool returns);
  // When nothing is waited for: reads what the flow has not reached. Run() has been done.
  void Sweep();
  bool Returns() const { return code_.returns || code_.doubt != CodeDoubt::kNone; }

  FunctionCode Result() const;

 private:
  struct Block {
    CodeState in;
    uint64_t end = 0;  // behind what was walked
    int64_t deepest = 0;
    uint16_t deepenings = 0;
    bool isQueued = false;
    bool isWalked = false;
    bool touchesPages = false;  // down to an address that is not known, in a loop
    bool isSwept = false;       // or reached from what was not reached
  };
  using Blocks = std::map<uint64_t, Block>;
  struct Cursor {
    explicit Cursor(Blocks::iterator at) : block(at), address(at->first), state(at->second.in) {}

    Blocks::iterator block;
    uint64_t address;
    CodeState state;
    uint8_t conditionalLeft = 0;  // instructions that have codes from the one before them
    uint64_t conditionCodes = 0;
    // While instructions with one condition, and its opposite, follow one another: what is known
    // where it does not hold; `state` is where it holds. Each may be gone elsewhere.
    std::optional<uint8_t> conditionCode;
    std::optional<CodeState> otherState;
    bool isStateGone = false;
    // From here to the end of its section.
    std::string_view Code(const CodeImage& image) const {
      return code.substr(static_cast<size_t>(image.Place(address) - codeAddress));
    }
    std::string_view code;  // from codeAddress on
    uint64_t codeAddress = 0;
    uint64_t limit = 0;   // where it must be asked again whether code is there
    bool mayEnd = false;  // what was executed last need not have come back
  };

  void Reach(uint64_t address, const CodeState& state, Block* from);
  void JoinInto(Blocks::iterator block, const CodeState& state, Block* from);
  void Queue(Blocks::iterator block);
  void SweepRange(uint64_t start, uint64_t end, const CodeState& state);
  void WalkBlock(Blocks::iterator block);
  bool CanStand(Cursor& cursor);
  const CodeInstruction& InstructionAt(const Cursor& cursor);
  bool IsLeader(const Cursor& cursor) const;
  bool Execute(Cursor& cursor, const CodeInstruction& instruction);
  bool ExecuteOne(Cursor& cursor, const CodeInstruction& instruction);
  // Instructions that are executed on a condition (function_walk_conditions.cpp).
  CodeInstruction WithCondition(Cursor& cursor, const CodeInstruction& instruction) const;
  bool ExecuteConditional(Cursor& cursor, const CodeInstruction& instruction);
  bool EndConditions(Cursor& cursor);
  void NoteState(Cursor& cursor);

  bool Jump(Cursor& cursor, const CodeInstruction& instruction);
  CodeState FirstState() const;
  void JumpTo(Cursor& cursor, uint64_t target, const CodeState& state);
  bool TouchesNextPage(Cursor& cursor, const CodeInstruction& jump, uint64_t target,
                       const CodeState& state);
  void JumpToValue(Cursor& cursor, const CodeValue& target, const CodeState& state);
  void Return(Cursor& cursor, const CodeState& state);
  bool JumpByTable(Cursor& cursor, const CodeValue& table, const CodeState& state);
  bool Call(Cursor& cursor, const CodeInstruction& instruction);
  bool CallValue(Cursor& cursor, const CodeInstruction& instruction, const CodeValue& target);
  bool CallFunction(Cursor& cursor, uint32_t function, uint64_t next);
  uint32_t ImportOf(const CodeValue& value);
  bool CallAddress(Cursor& cursor, const CodeInstruction& instruction, uint64_t target);
  bool CallHelper(Cursor& cursor, const CodeInstruction& instruction,
                  CodeSurroundings::TableHelper helper);
  uint8_t RegisterJumpedTo(uint64_t address) const;
  bool ComesBack(Cursor& cursor, uint32_t function, uint64_t next);
  void TailCall(uint64_t place, uint32_t function);
  void WaitFor(uint32_t function, uint64_t next, const CodeState& state);

  bool IsOwn(uint64_t address) const;
  bool IsBalanced(const CodeState& state) const;
  int64_t StartOffset() const;
  uint64_t Next(uint64_t address, const CodeInstruction& instruction) const {
    return address + instruction.length;
  }
  void Doubt(CodeDoubt doubt, uint64_t address);
  void GiveUp(uint64_t address);
  bool TellsCodeFromData() const { return image_.HasMarks() || !conventions_.hasDataInCode; }

  const CodeImage& image_;
  InstructionDecoder& decoder_;
  CodeSurroundings& around_;
  const CodeConventions& conventions_;
  const CodeStep step_;
  const Range range_;
  Blocks blocks_;
  std::set<uint64_t> splits_;  // where blocks end, and the next one begins
  std::vector<uint64_t> queue_;
  std::deque<CodeInstruction> kept_;
  std::vector<uint32_t> keptNumbers_;  // by place, counted from 1
  CodeInstruction other_;
  std::map<uint64_t, uint32_t> calls_;  // by place
  std::set<uint64_t> sites_;
  // By called function, then by where it goes on; 0: the function itself returns then.
  std::map<uint32_t, std::map<uint64_t, CodeState>> waiters_;
  std::vector<uint32_t> newWaits_;
  std::optional<CodeState> deepest_;
  FunctionCode code_;
  bool hasComputedJump_ = false;
  bool isSwept_ = false;
  bool hasGivenUp_ = false;
};

}  // namespace velkor
