#pragma once

#include <cstdint>
#include <vector>

#include "readers/gcc/elf_file.h"

namespace velkor {

// What call frame information says of one function.
struct FunctionFrame {
  uint32_t section = 0;  // where it begins, by number; 0 in a linked program
  uint64_t address = 0;  // the place within the section, or the address
  // The largest distance of the frame address from any register, over all places of the function,
  // in bytes as the compiler's own figure counts them (what a call pushes itself is counted where
  // that counts it). Less than the function uses where it works with a frame pointer.
  uint64_t bytes = 0;
  bool isWhole = true;  // false: at some place the information gives no number
};

// The call frame information of an object or a program, from .eh_frame and .debug_frame. Sections
// that are compressed or cut are among the faults.
class CallFrames {
 public:
  explicit CallFrames(const ElfFile& elf);

  // One a function, ordered by section and address. A linker leaves entries of functions that it
  // dropped at address 0 or near.
  const std::vector<FunctionFrame>& Frames() const { return frames_; }
  // Of the function that begins there exactly, none otherwise.
  const FunctionFrame* Find(uint32_t section, uint64_t address) const;
  const BinaryFaults& Faults() const { return faults_; }

 private:
  void MergeEqual();

  std::vector<FunctionFrame> frames_;
  BinaryFaults faults_;
};

}  // namespace velkor
