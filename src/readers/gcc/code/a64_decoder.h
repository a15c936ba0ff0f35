#pragma once

#include <cstdint>
#include <string_view>

#include "readers/gcc/code/instruction_decoder.h"

namespace velkor {

// AArch64. Its instructions are all of one length and their fields stand where the form of each
// says, so that no disassembler is needed, which would lack the newer ones.
class A64Decoder : public InstructionDecoder {
 public:
  A64Decoder();

  const CodeConventions& Conventions() const override { return conventions_; }
  CodeInstruction Decode(std::string_view bytes, uint64_t address) override;

 private:
  const CodeConventions conventions_;
};

}  // namespace velkor
