#pragma once

#include <cstdint>
#include <optional>

#include "readers/gcc/code/code_image.h"
#include "readers/gcc/code/code_instruction.h"
#include "readers/gcc/code/code_state.h"
#include "readers/gcc/code/instruction_decoder.h"

namespace velkor {

// What single instructions make of what is known. Where the flow goes is not its matter: a jump to
// what memory holds is left in the register of the program counter.
class CodeStep {
 public:
  CodeStep(const CodeImage& image, const CodeConventions& conventions)
      : image_(image), conventions_(conventions) {}

  // As if it were always executed. address: of the instruction.
  void Apply(const CodeInstruction& instruction, uint64_t address, CodeState& state) const;
  // After a call has come back.
  void ApplyReturnOfCall(uint64_t address, CodeState& state) const;
  // Where a call within a function comes back to, on machines that push it.
  void PushReturn(uint64_t address, CodeState& state) const;
  // What the condition of a jump tells, once it is taken, or is not.
  void ApplyCondition(CodeCondition condition, bool isTaken, uint64_t address,
                      CodeState& state) const;

 private:
  // An address in memory, and of what kind.
  struct Place {
    CodeValue value;
    uint8_t width = 0;
    bool isSigned = false;
  };

  CodeValue Get(uint8_t number, const CodeState& state) const;
  void Set(uint8_t number, const CodeValue& value, uint64_t address, CodeState& state) const;
  void SetStack(const CodeValue& value, CodeState& state) const;
  void Compute(const CodeInstruction& instruction, uint64_t address, CodeState& state) const;
  void Compare(const CodeInstruction& instruction, uint64_t address, CodeState& state) const;
  void Load(const CodeInstruction& instruction, uint64_t address, CodeState& state) const;
  void Leave(const CodeInstruction& instruction, uint64_t address, CodeState& state) const;
  void Store(const CodeInstruction& instruction, uint64_t address, CodeState& state) const;
  void ChangeBase(const CodeMemory& memory, uint64_t address, CodeState& state) const;

  Place PlaceOf(const CodeMemory& memory, uint64_t address, const CodeState& state) const;
  CodeValue LoadFrom(const Place& place, int64_t offset, uint64_t name,
                     const CodeState& state) const;
  std::optional<CodeValue> LinkedWord(uint64_t address) const;
  CodeValue Literal(uint64_t place, const Place& of, uint64_t name) const;
  CodeValue Sum(const CodeValue& left, const CodeValue& right, uint8_t shift, uint64_t name) const;
  CodeValue Moved(const CodeValue& value, int64_t by, uint64_t name) const;
  CodeValue Difference(const CodeValue& left, const CodeValue& right, uint8_t shift,
                       uint64_t name) const;
  // What operations on bits make; none: it is none of them.
  std::optional<CodeValue> WithBits(const CodeInstruction& instruction, const CodeValue& source,
                                    const CodeValue& index, uint64_t name) const;
  // old with 16 bits from shift on replaced.
  CodeValue WithPart(const CodeValue& old, uint64_t immediate, uint8_t shift, uint64_t name) const;
  CodeValue SignExtended(const CodeValue& source, uint8_t width, uint64_t name) const;
  CodeValue Masked(const CodeValue& value, uint64_t mask, uint64_t name) const;
  static CodeValue Limited(const CodeValue& value, uint64_t limit, uint64_t name);
  CodeValue ShiftedLeft(const CodeValue& value, uint8_t shift, uint64_t name) const;
  CodeValue ShiftedRight(const CodeValue& value, uint8_t shift, uint64_t name) const;
  CodeValue Number(const CodeValue& constant) const;
  CodeValue Wrapped(uint64_t constant) const;

  const CodeImage& image_;
  const CodeConventions& conventions_;
};

}  // namespace velkor
