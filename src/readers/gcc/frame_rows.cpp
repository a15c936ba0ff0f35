#include "readers/gcc/frame_rows.h"

#include <algorithm>
#include <array>
#include <vector>

namespace velkor {
namespace {

enum class FrameOperand : uint8_t {
  kNone,
  kBytes1,
  kBytes2,
  kBytes4,
  kBytes8,
  kAddress,
  kUnsigned,
  kSigned,  // in units of the data factor
  kBlock,
};

enum class FrameEffect : uint8_t {
  kNone,
  kNextRow,
  kOffset,  // the last operand is the new distance
  kRegister,
  kExpression,
  kRemember,
  kRestore,
};

struct FrameInstruction {
  uint8_t code;
  FrameOperand first;
  FrameOperand second;
  FrameEffect effect;
};

using enum FrameOperand;

constexpr std::array<FrameInstruction, 30> kInstructions = {{
    {0x00, kNone, kNone, FrameEffect::kNone},            // nothing
    {0x01, kAddress, kNone, FrameEffect::kNextRow},      // set_loc
    {0x02, kBytes1, kNone, FrameEffect::kNextRow},       // advance_loc1
    {0x03, kBytes2, kNone, FrameEffect::kNextRow},       // advance_loc2
    {0x04, kBytes4, kNone, FrameEffect::kNextRow},       // advance_loc4
    {0x05, kUnsigned, kUnsigned, FrameEffect::kNone},    // offset_extended
    {0x06, kUnsigned, kNone, FrameEffect::kNone},        // restore_extended
    {0x07, kUnsigned, kNone, FrameEffect::kNone},        // undefined
    {0x08, kUnsigned, kNone, FrameEffect::kNone},        // same_value
    {0x09, kUnsigned, kUnsigned, FrameEffect::kNone},    // register
    {0x0A, kNone, kNone, FrameEffect::kRemember},        // remember_state
    {0x0B, kNone, kNone, FrameEffect::kRestore},         // restore_state
    {0x0C, kUnsigned, kUnsigned, FrameEffect::kOffset},  // def_cfa
    {0x0D, kUnsigned, kNone, FrameEffect::kRegister},    // def_cfa_register
    {0x0E, kUnsigned, kNone, FrameEffect::kOffset},      // def_cfa_offset
    {0x0F, kBlock, kNone, FrameEffect::kExpression},     // def_cfa_expression
    {0x10, kUnsigned, kBlock, FrameEffect::kNone},       // expression
    {0x11, kUnsigned, kSigned, FrameEffect::kNone},      // offset_extended_sf
    {0x12, kUnsigned, kSigned, FrameEffect::kOffset},    // def_cfa_sf
    {0x13, kSigned, kNone, FrameEffect::kOffset},        // def_cfa_offset_sf
    {0x14, kUnsigned, kUnsigned, FrameEffect::kNone},    // val_offset
    {0x15, kUnsigned, kSigned, FrameEffect::kNone},      // val_offset_sf
    {0x16, kUnsigned, kBlock, FrameEffect::kNone},       // val_expression
    {0x1D, kBytes8, kNone, FrameEffect::kNextRow},       // MIPS: advance_loc8
    {0x2C, kNone, kNone, FrameEffect::kNone},            // AArch64: signed return addresses
    {0x2D, kNone, kNone, FrameEffect::kNone},            // SPARC: windows, AArch64: as above
    {0x2E, kUnsigned, kNone, FrameEffect::kNone},        // bytes of pushed arguments
    {0x2F, kUnsigned, kUnsigned, FrameEffect::kNone},    // negative_offset_extended
    // Those that hold an operand of 6 bits in themselves; 0xC0 (restore) has no other.
    {0x40, kNone, kNone, FrameEffect::kNextRow},   // advance_loc
    {0x80, kUnsigned, kNone, FrameEffect::kNone},  // offset
}};

constexpr FrameInstruction kRestoreRegister = {0xC0, kNone, kNone, FrameEffect::kNone};

const FrameInstruction* FindInstruction(uint8_t code) {
  constexpr uint8_t kShortForms = 0xC0;
  const uint8_t form = code & kShortForms;
  if (form == kShortForms) {
    return &kRestoreRegister;
  }
  const uint8_t wanted = form != 0 ? form : code;
  const auto* const found =
      std::ranges::lower_bound(kInstructions, wanted, {}, &FrameInstruction::code);
  return found != kInstructions.end() && found->code == wanted ? found : nullptr;
}

// 64 bits are more than any frame has; beyond a quarter of them it stays there, so that no sum
// overflows.
int64_t Limited(int64_t bytes) {
  constexpr int64_t kMost = int64_t{1} << 62;
  return std::clamp(bytes, -kMost, kMost);
}

class FrameMachine {
 public:
  FrameMachine(std::string_view instructions, const FrameEncoding& encoding, FrameOffset first)
      : reader_(instructions, encoding.order), encoding_(encoding) {
    rows_.last = first;
  }

  FrameRows Run() {
    while (!reader_.AtEnd()) {
      const FrameInstruction* instruction = FindInstruction(reader_.Byte());
      if (instruction == nullptr || !Apply(*instruction)) {
        rows_.isRead = false;
        rows_.isWhole = false;
        break;
      }
    }
    EndRow();
    return rows_;
  }

 private:
  bool Apply(const FrameInstruction& instruction) {
    int64_t value = Operand(instruction.first);
    if (instruction.second != kNone) {
      value = Operand(instruction.second);
    }
    if (reader_.Failed()) {
      return false;
    }
    switch (instruction.effect) {
      case FrameEffect::kNone:
        return true;
      case FrameEffect::kRegister:
        SetRegister();
        return true;
      case FrameEffect::kNextRow:
        EndRow();
        return true;
      case FrameEffect::kOffset:
        rows_.last = {value, FrameOffset::Kind::kBytes};
        return true;
      case FrameEffect::kExpression:
        rows_.last.kind = FrameOffset::Kind::kExpression;
        return true;
      case FrameEffect::kRemember:
        remembered_.push_back(rows_.last);
        return true;
      case FrameEffect::kRestore:
        return Restore();
    }
    return false;
  }

  // The distance stays as it is. Some assemblers begin with the register alone, at distance 0.
  void SetRegister() {
    if (rows_.last.kind == FrameOffset::Kind::kUnset) {
      rows_.last.kind = FrameOffset::Kind::kBytes;
    }
  }

  bool Restore() {
    if (remembered_.empty()) {
      return false;
    }
    rows_.last = remembered_.back();
    remembered_.pop_back();
    return true;
  }

  int64_t Operand(FrameOperand operand) {
    switch (operand) {
      case kNone:
        return 0;
      case kBytes1:
        return static_cast<int64_t>(reader_.Unsigned(1));
      case kBytes2:
        return static_cast<int64_t>(reader_.Unsigned(2));
      case kBytes4:
        return static_cast<int64_t>(reader_.Unsigned(4));
      case kBytes8:
        return static_cast<int64_t>(reader_.Unsigned(8));
      case kAddress:
        return static_cast<int64_t>(reader_.Unsigned(encoding_.addressSize));
      case kUnsigned:
        return UnsignedOperand();
      case kSigned:
        return SignedOperand();
      case kBlock:
        reader_.Skip(reader_.VariableUnsigned());
        return 0;
    }
    return 0;
  }

  int64_t UnsignedOperand() {
    const uint64_t value = reader_.VariableUnsigned();
    return value > INT64_MAX ? Limited(INT64_MAX) : Limited(static_cast<int64_t>(value));
  }

  int64_t SignedOperand() {
    constexpr int64_t kMost = int64_t{1} << 31;
    const int64_t value = std::clamp(reader_.VariableSigned(), -kMost, kMost);
    return Limited(value * std::clamp(encoding_.dataFactor, -kMost + 1, kMost - 1));
  }

  void EndRow() {
    if (rows_.last.kind == FrameOffset::Kind::kBytes) {
      rows_.largest = std::max(rows_.largest, rows_.last.bytes);
    } else {
      rows_.isWhole = false;
    }
  }

  ByteReader reader_;
  const FrameEncoding encoding_;
  FrameRows rows_;
  std::vector<FrameOffset> remembered_;
};

}  // namespace

FrameRows RunFrameInstructions(std::string_view instructions, const FrameEncoding& encoding,
                               FrameOffset first) {
  return FrameMachine(instructions, encoding, first).Run();
}

}  // namespace velkor
