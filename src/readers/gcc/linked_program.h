#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "readers/gcc/call_frames.h"
#include "readers/gcc/code/program_code.h"
#include "readers/gcc/elf_file.h"
#include "readers/gcc/object_facts.h"
#include "readers/gcc/program_target.h"
#include "readers/gcc/unit_recording.h"
#include "readers/gcc/whole_file.h"
#include "readers/program_facts.h"

namespace velkor {

// A linked program, beside the call graphs of its parts: which functions it holds, where it is
// entered, how large its objects are. Read once, then used by any number of threads.
class LinkedProgram {
 public:
  // unwanted: when it is asked to stop, what has not been read of the code is left out.
  explicit LinkedProgram(WholeFile file, const std::stop_token& unwanted = {});

  bool IsElf() const { return elf_.IsElf(); }
  uint16_t Machine() const { return elf_.Machine(); }
  BinaryFaults Faults() const;

  // False: it was stripped, and what it does not name says nothing.
  bool HasSymbols() const { return !facts_.Functions().empty(); }
  // False: names of static functions were stripped.
  bool HasLocalFunctions() const { return hasLocalFunctions_; }
  bool HasFunction(std::string_view name) const { return !Named(name).empty(); }
  // Of all functions of that name: kLocal where every one is, else kWeak or kGlobal. kUnknown
  // without one, and where some are local and some are not.
  UnitRecording::Reach ReachOf(std::string_view name) const;
  // Other names of the same code. Empty where several functions have the name.
  std::vector<std::string_view> AliasesOf(std::string_view name) const;
  // From call frame information; 0 where there is none, or several functions have the name.
  uint64_t FrameBytesOf(std::string_view name) const;

  // What its instructions tell.
  const ProgramCode& Code() const { return code_; }
  const ObjectFacts& Facts() const { return facts_; }
  // In Code(), of the function that the name means: not a local one where there is another. Of
  // several local ones, the one of that source. kNone where that does not tell.
  uint32_t CodeNamed(std::string_view name, std::string_view source = {}) const;

  // Where the program is entered from outside: its entry and what its vector table names, each as
  // the names of one address. vectors: the symbol of the table, empty to look for it.
  struct Entry {
    std::vector<std::string_view> names;
    uint32_t vector = 0;  // its place in the vector table, 0 for the program's entry
  };
  std::vector<Entry> Entries(std::string_view vectors) const;
  // Its vector table begins with a stack pointer and its entry. False: only functions of known
  // names are entries.
  bool HasPointerVectors() const { return elf_.Machine() != ELF_AVR; }

  // Such a symbol is defined.
  bool HasSymbol(std::string_view name) const { return FindSymbol(name) != nullptr; }
  // Everything that has a name and is no function. Of several of one name the global one, else the
  // smallest.
  std::vector<ProgramFacts::Symbol> Symbols() const;
  std::optional<uint64_t> FirstWritable() const;
  std::string Target() const { return TargetOf(elf_); }
  // What the words of the object of that name point to: the names of each function, and objects.
  struct Pointers {
    std::vector<std::vector<std::string_view>> functions;
    std::vector<std::string_view> objects;
  };
  Pointers PointersIn(std::string_view object) const;
  // By name.
  std::vector<std::string_view> ObjectsThatBegin(std::string_view prefix) const;

 private:
  struct Table {
    std::string_view bytes;
    bool endsAtOther = false;  // its size is not known: ends where a word is no handler
  };

  std::vector<uint32_t> Named(std::string_view name) const;
  const ElfSymbol* FindSymbol(std::string_view name) const;
  Table FindVectors(std::string_view vectors) const;
  std::string_view BytesAt(uint64_t address, uint64_t size) const;
  std::vector<std::string_view> NamesAt(uint64_t address) const;
  std::vector<Entry> EntriesByName() const;
  uint64_t CodeAddress(uint64_t word) const {
    return elf_.Machine() == ELF_ARM ? word & ~uint64_t{1} : word;
  }

  WholeFile file_;
  ElfFile elf_;
  ObjectFacts facts_;
  CallFrames frames_;
  ProgramCode code_;
  std::vector<uint32_t> byName_;     // functions, ordered by name
  std::vector<uint32_t> byAddress_;  // the same by address
  bool hasLocalFunctions_ = false;
};

}  // namespace velkor
