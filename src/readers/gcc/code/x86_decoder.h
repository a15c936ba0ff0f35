#pragma once

#include <string_view>

#include "readers/gcc/code/capstone_session.h"
#include "readers/gcc/code/instruction_decoder.h"

namespace velkor {

// x86 of 64 bits.
class X86Decoder : public InstructionDecoder {
 public:
  X86Decoder();

  const CodeConventions& Conventions() const override { return conventions_; }
  CodeInstruction Decode(std::string_view bytes, uint64_t address) override;

 private:
  const CodeConventions conventions_;
  CapstoneSession session_;
};

}  // namespace velkor
