#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "readers/gcc/code/code_instruction.h"
#include "readers/gcc/elf_file.h"

namespace velkor {

// How functions of a machine are called.
struct CodeConventions {
  uint8_t registerCount = 0;
  uint8_t stackRegister = 0;
  uint8_t jumpRegister = 0;  // the program counter, or a number that no register has
  uint8_t linkRegister = CodeInstruction::kNone;  // none: calls push where they return to
  uint8_t wordSize = 4;
  uint8_t stackAlignment = 4;  // what the stack pointer always is a multiple of
  uint64_t lostInCalls = 0;    // registers that a called function may change
  uint64_t numberMask = UINT32_MAX;
  bool hasDataInCode = true;  // which only mapping symbols tell apart
};

// Turns the bytes of one machine's code into instructions. Keeps what it has seen: one thread.
class InstructionDecoder {
 public:
  virtual ~InstructionDecoder() = default;
  InstructionDecoder() = default;
  InstructionDecoder(const InstructionDecoder&) = delete;
  InstructionDecoder& operator=(const InstructionDecoder&) = delete;

  virtual const CodeConventions& Conventions() const = 0;
  // The instruction at the begin of the bytes. address: with bit 0 for Thumb. kUnknown with a
  // length of at least 1 where the bytes are none, or none that is known here.
  virtual CodeInstruction Decode(std::string_view bytes, uint64_t address) = 0;
};

// How many instructions are worth keeping of a program with so much code: a power of 2.
size_t KeptCount(uint64_t codeBytes);

// None: the machine, or its byte order, is not known here.
std::unique_ptr<InstructionDecoder> MakeInstructionDecoder(const ElfFile& elf);

}  // namespace velkor
