#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "readers/gcc/code/capstone_session.h"
#include "readers/gcc/code/instruction_decoder.h"

namespace velkor {

// ARM and Thumb, little-endian.
class ArmDecoder : public InstructionDecoder {
 public:
  // codeBytes: of the program, for what is to be kept.
  explicit ArmDecoder(uint64_t codeBytes);

  const CodeConventions& Conventions() const override { return conventions_; }
  CodeInstruction Decode(std::string_view bytes, uint64_t address) override;

 private:
  // What an encoding was decoded to, where it is kept.
  struct Kept {
    uint32_t encoding = 0;
    bool isFilled = false;
    CodeInstruction instruction;
  };

  size_t SlotOf(uint32_t encoding) const;
  CodeInstruction DecodeThumb(std::string_view bytes);
  CodeInstruction DecodeArm(std::string_view bytes);
  CodeInstruction Disassemble(std::string_view bytes, bool isThumb);

  const CodeConventions conventions_;
  CapstoneSession thumb_;          // microcontrollers
  CapstoneSession thumbOfOthers_;  // what those do not have
  CapstoneSession arm_;
  std::vector<Kept> kept_;     // of Thumb, by a part of the encoding
  std::vector<Kept> keptArm_;  // likewise
};

}  // namespace velkor
