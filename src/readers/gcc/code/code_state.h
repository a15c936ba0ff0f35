#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "readers/gcc/code/code_value.h"

namespace velkor {

// What is known before an instruction is executed: of the registers, of places on the stack, of
// the last comparison.
class CodeState {
 public:
  static constexpr size_t kMostRegisters = 33;

  // wordSize: bytes of a place on the stack.
  CodeState(uint8_t stackRegister, uint8_t registerCount, uint8_t wordSize);

  const CodeValue& Register(uint8_t number) const { return registers_[number]; }
  void SetRegister(uint8_t number, const CodeValue& value) { registers_[number] = value; }
  const CodeValue& Stack() const { return registers_[stackRegister_]; }
  uint8_t StackRegister() const { return stackRegister_; }
  uint8_t RegisterCount() const { return registerCount_; }

  // Whether the stack pointer was set to another stack's.
  bool IsOnOtherStack() const { return isOnOtherStack_; }
  void ChangeStack() { isOnOtherStack_ = true; }

  // The place at that offset, none where nothing is known of it.
  const CodeValue* Slot(int64_t offset) const;
  // width: of what is written, in bytes. Numbers are not kept.
  void StoreSlot(int64_t offset, int64_t width, const CodeValue& value);
  // Something is written that may be anywhere but over saved registers.
  void ForgetNumbers();

  // What the flags tell: a value was compared with `limit`, or the stack pointer with an address
  // in it.
  struct Comparison {
    enum class Kind : uint8_t { kNone, kNumber, kSlot, kStack };
    Kind kind = Kind::kNone;
    uint64_t id = 0;     // of the number
    int64_t offset = 0;  // of the slot
    uint64_t limit = 0;
    CodeValue stack;
    bool operator==(const Comparison&) const = default;
  };
  const Comparison& Flags() const { return flags_; }
  void SetFlags(const Comparison& comparison) { flags_ = comparison; }

  // The number that the flags tell of is at most that. id: of a place on the stack.
  void LimitCompared(uint64_t bound, uint64_t id);

  // Takes in what is known where this place is reached otherwise, too. place: for the names of
  // numbers. True: less is known than before. The stack pointer becomes the deeper one.
  bool Join(const CodeState& other, uint64_t place);
  // The name of the number that an instruction at `place` makes, in its register or another part.
  static uint64_t NumberName(uint64_t place, uint64_t part) { return place << 6 | part; }

 private:
  struct Place {
    int64_t offset;
    CodeValue value;
    bool operator==(const Place&) const = default;
  };

  bool JoinStack(const CodeValue& other);
  bool JoinSlots(const CodeState& other);

  std::array<CodeValue, kMostRegisters> registers_;
  std::vector<Place> slots_;  // ordered by offset
  Comparison flags_;
  uint8_t stackRegister_;
  uint8_t registerCount_;
  uint8_t wordSize_;
  bool isOnOtherStack_ = false;
};

}  // namespace velkor
