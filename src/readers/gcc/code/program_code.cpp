#include "readers/gcc/code/program_code.h"

#include <algorithm>

#include "readers/gcc/code/pointed_functions.h"
#include "readers/gcc/code/program_reading.h"

namespace velkor {
namespace {

constexpr int kMostVeneers = 4;  // behind one another

bool IsVeneer(std::string_view name) {
  return name.starts_with("__") && (name.ends_with("_veneer") || name.ends_with("_from_arm") ||
                                    name.ends_with("_from_thumb"));
}

}  // namespace

ProgramCode::ProgramCode(const ElfFile& elf, const ObjectFacts& facts, const CallFrames& frames,
                         const std::stop_token& unwanted)
    : facts_(facts) {
  const auto decoder = MakeInstructionDecoder(elf);
  if (decoder == nullptr || elf.IsRelocatable()) {
    return;
  }
  isKnownMachine_ = true;
  ProgramReading reading(elf, facts, *decoder);
  reading.Read(unwanted);
  if (unwanted.stop_requested()) {
    return;
  }
  std::vector<uint64_t> starts;
  for (const ProgramReading::Function& read : reading.Functions()) {
    const FunctionFrame* frame = frames.Find(0, read.address);
    functions_.push_back({read.address, read.firstName, read.nameCount, read.code});
    functions_.back().code.callFrameBytes = frame != nullptr ? frame->bytes : 0;
    if (read.nameCount != 0) {
      ++namedCount_;
      starts.push_back(read.start);
    }
  }
  pointed_ = PointedFunctions(elf, starts);
}

uint32_t ProgramCode::Find(uint64_t address) const {
  const auto named = functions_.begin() + static_cast<ptrdiff_t>(namedCount_);
  const auto found =
      std::ranges::lower_bound(functions_.begin(), named, address, {}, &Function::address);
  if (found != named && found->address == address) {
    return static_cast<uint32_t>(found - functions_.begin());
  }
  const auto unnamed = std::find_if(named, functions_.end(), [&](const Function& function) {
    return function.address == address;
  });
  return unnamed == functions_.end() ? kNone : static_cast<uint32_t>(unnamed - functions_.begin());
}

std::string_view ProgramCode::NameOf(uint32_t function) const {
  const Function& of = functions_[function];
  return of.nameCount == 0 ? of.code.import : facts_.Functions()[of.firstName].name;
}

uint32_t ProgramCode::Meant(uint32_t function) const {
  for (int i = 0; i < kMostVeneers; ++i) {
    const FunctionCode& code = functions_[function].code;
    if (code.calls.size() != 1 || !code.sites.empty()) {
      break;
    }
    const uint32_t next = code.calls.front();
    const bool isOfLibrary =
        functions_[function].nameCount == 0 && !functions_[next].code.import.empty();
    if (!IsVeneer(NameOf(function)) && !isOfLibrary) {
      break;
    }
    function = next;
  }
  return function;
}

}  // namespace velkor
