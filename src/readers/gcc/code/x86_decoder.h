#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "readers/gcc/code/capstone_session.h"
#include "readers/gcc/code/instruction_decoder.h"

namespace velkor {

// x86 of 64 bits.
class X86Decoder : public InstructionDecoder {
 public:
  // codeBytes: of the program, for what is to be kept.
  explicit X86Decoder(uint64_t codeBytes);

  const CodeConventions& Conventions() const override { return conventions_; }
  CodeInstruction Decode(std::string_view bytes, uint64_t address) override;

 private:
  // What short instructions were decoded to. No instruction is the beginning of another one.
  struct Kept {
    uint64_t bytes = 0;
    uint8_t length = 0;  // 0: nothing is kept
    CodeInstruction instruction;
  };

  size_t SlotOf(uint64_t value, size_t length) const;
  const CodeInstruction* Find(std::string_view bytes) const;
  void Keep(std::string_view bytes, const CodeInstruction& instruction);

  const CodeConventions conventions_;
  CapstoneSession session_;
  std::vector<Kept> kept_;                // by a part of bytes and length
  std::array<uint8_t, 65536> lengths_{};  // that are kept, a bit each, by the first two bytes
};

}  // namespace velkor
