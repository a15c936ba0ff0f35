#pragma once

#include <cstdint>
#include <vector>

#include "readers/gcc/elf_file.h"
#include "readers/gcc/function_frame.h"

namespace velkor {

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
