#include <string_view>
#include <utility>

#include "fuzz/fuzzers.h"
#include "fuzz/require.h"
#include "readers/gcc/address_uses.h"
#include "readers/gcc/call_frames.h"
#include "readers/gcc/object_facts.h"
#include "readers/gcc/program_target.h"

namespace velkor::testing {

namespace {

void CheckWithin(std::string_view part, std::string_view whole) {
  Require(part.empty() || (part.data() >= whole.data() &&
                           part.data() + part.size() <= whole.data() + whole.size()),
          "what is answered lies in the file");
}

void CheckSections(const ElfFile& elf, std::string_view bytes) {
  uint64_t total = 0;
  for (const ElfSection& section : elf.Sections()) {
    CheckWithin(section.name, bytes);
    CheckWithin(section.bytes, bytes);
    Require(section.bytes.empty() || section.state == ElfSectionState::kPresent,
            "only what is there has bytes", section.name);
    total += section.bytes.size();
  }
  Require(total <= bytes.size(), "sections hold no more than the file");
  for (const ElfSegment& segment : elf.Segments()) {
    CheckWithin(segment.bytes, bytes);
  }
}

void CheckSymbols(const ElfFile& elf, std::string_view bytes) {
  uint64_t total = 0;
  for (const ElfSymbol& symbol : elf.Symbols()) {
    CheckWithin(symbol.name, bytes);
    total += symbol.name.size();
  }
  Require(total <= 16 * bytes.size(), "names cost no more than the file", "");
  size_t relocations = 0;
  BinaryFaults faults;
  for (uint32_t i = 0; i < elf.Sections().size(); ++i) {
    for (const ElfRelocation& relocation : elf.RelocationsOf(i, faults)) {
      Require(relocation.symbol < elf.Symbols().size(), "a relocation has a symbol");
      ++relocations;
    }
  }
  Require(relocations <= bytes.size() / 8, "relocations cost no more than the file");
}

void CheckFrames(const CallFrames& frames, std::string_view bytes) {
  Require(frames.Frames().size() <= bytes.size() / 8, "frames cost no more than the file");
  const FunctionFrame* before = nullptr;
  for (const FunctionFrame& frame : frames.Frames()) {
    Require(before == nullptr || std::pair(before->section, before->address) <
                                     std::pair(frame.section, frame.address),
            "frames are ordered");
    Require(frames.Find(frame.section, frame.address) == &frame, "a frame is found");
    before = &frame;
  }
}

void CheckFacts(const ObjectFacts& facts) {
  const auto count = static_cast<uint32_t>(facts.Functions().size());
  for (uint32_t i = 0; i < count; ++i) {
    const ObjectFunction& function = facts.Functions()[i];
    Require(facts.FirstAlias(i) <= i, "the first alias comes first", function.name);
    Require(facts.FunctionAt(function.section, function.address) == facts.FirstAlias(i),
            "a function begins where it begins", function.name);
    Require(facts.Functions().at(facts.Find(function.name)).name == function.name,
            "a function is found by its name", function.name);
  }
  for (const ObjectCall& call : facts.Calls()) {
    Require(call.caller == ObjectCall::kNoFunction ||
                call.caller == facts.FunctionAt(call.section, call.offset),
            "a call lies in its caller", call.target);
    Require(call.targetFunction == ObjectCall::kNoFunction || call.targetFunction < count,
            "a target is a function", call.target);
  }
}

}  // namespace

void FuzzElf(std::string_view bytes) {
  const ElfFile elf(bytes);
  Require(elf.IsElf() || elf.Faults().Has(BinaryFault::kNotElf), "a reason is told");
  CheckSections(elf, bytes);
  CheckSymbols(elf, bytes);
  CheckFrames(CallFrames(elf), bytes);
  const ObjectFacts facts(elf);
  CheckFacts(facts);
  for (const AddressUse& use : AddressUsesOf(elf, facts)) {
    Require(use.user < facts.Functions().size(), "a function uses an address", use.name);
  }
  Require(TargetOf(elf).size() <= bytes.size() + 16, "a target is a word");
}

}  // namespace velkor::testing
