#pragma once

#include <cstdint>

namespace velkor {

// What is known of the content of a register or of a place on the stack.
struct CodeValue {
  enum class Kind : uint8_t {
    kNumber,    // `amount` + (any, at most `bound`, << `shift`)
    kConstant,  // `amount`
    kStack,     // an address: `amount` from where the stack pointer was when the caller had it
    kReturn,    // where the function was called from
    kImport,    // of a shared library; held by the linker's table
    kTable,     // `amount` + (an entry of the table at `id` << `shift`)
  };
  static constexpr uint64_t kNoBound = UINT64_MAX;

  Kind kind = Kind::kNumber;
  bool isGiven = false;   // number: from memory other than the stack, or one of several constants
  bool isBelow = false;   // stack: there or at any place below
  bool isSigned = false;  // table: its entries are
  uint8_t width = 0;      // table: bytes of an entry
  uint8_t shift = 0;
  int64_t amount = 0;         // number: 0, or an address that it is counted from
  uint64_t bound = kNoBound;  // number; table: the largest index
  // Number: equal ones have equal values (before the shift), of equal amounts. Table: its address.
  // Import: the address of its word.
  uint64_t id = 0;

  bool operator==(const CodeValue&) const = default;
  bool IsStack() const { return kind == Kind::kStack; }
  bool IsConstant() const { return kind == Kind::kConstant; }
  bool IsNumber() const { return kind == Kind::kNumber; }
  bool IsImport() const { return kind == Kind::kImport; }
  bool IsTable() const { return kind == Kind::kTable; }
  bool IsReturn() const { return kind == Kind::kReturn; }
  // Of memory other than the stack, or constant: not computed from the stack pointer.
  bool IsGiven() const { return IsConstant() || (IsNumber() && isGiven); }
  bool IsPlain() const { return IsNumber() && shift == 0 && amount == 0; }

  static CodeValue Constant(uint64_t value);
  static CodeValue Stack(int64_t offset);
  static CodeValue Return();
  static CodeValue Number(uint64_t id, uint64_t bound = kNoBound);
};

// Registers wrap around, and so do amounts.
constexpr int64_t WrappingSum(int64_t one, int64_t other) {
  return static_cast<int64_t>(static_cast<uint64_t>(one) + static_cast<uint64_t>(other));
}

// What is known where either may be there. id: of a number that it may become.
CodeValue Joined(const CodeValue& one, const CodeValue& other, uint64_t id);

}  // namespace velkor
