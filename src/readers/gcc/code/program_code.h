#pragma once

#include <cstdint>
#include <stop_token>
#include <string_view>
#include <vector>

#include "readers/gcc/call_frames.h"
#include "readers/gcc/code/function_code.h"
#include "readers/gcc/elf_file.h"
#include "readers/gcc/object_facts.h"

namespace velkor {

// What the instructions of a linked program tell of each of its functions. Takes time linear in
// the code; memory is bounded by it. Refers to the facts, which outlive it. Once made, used by any
// number of threads.
class ProgramCode {
 public:
  static constexpr uint32_t kNone = UINT32_MAX;

  // A function that a symbol names, or one that is called and has no name.
  struct Function {
    uint64_t address = 0;    // without the bit for Thumb
    uint32_t firstName = 0;  // in the functions of the facts, aliases behind one another
    uint32_t nameCount = 0;  // 0: it has no name, or is of a shared library
    FunctionCode code;
  };

  // unwanted: when it is asked to stop, functions are left out.
  ProgramCode(const ElfFile& elf, const ObjectFacts& facts, const CallFrames& frames,
              const std::stop_token& unwanted = {});

  // False: how its machine works is not known here, and there are no functions.
  bool IsKnownMachine() const { return isKnownMachine_; }
  // Those with names first, ordered by address.
  const std::vector<Function>& Functions() const { return functions_; }
  // The one that begins there; kNone otherwise.
  uint32_t Find(uint64_t address) const;
  // Where a call of the function leads: past the veneers of the linker.
  uint32_t Meant(uint32_t function) const;
  // Those with names whose address a word of the program holds, in code or in data, ascending: they
  // may be called through a pointer.
  const std::vector<uint32_t>& Pointed() const { return pointed_; }
  // Empty where it has none; of a function of a shared library, too.
  std::string_view NameOf(uint32_t function) const;

 private:
  const ObjectFacts& facts_;
  std::vector<Function> functions_;
  std::vector<uint32_t> pointed_;
  size_t namedCount_ = 0;
  bool isKnownMachine_ = false;
};

}  // namespace velkor
