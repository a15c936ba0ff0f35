#include "readers/gcc/call_frames.h"

#include <algorithm>
#include <utility>

#include "readers/gcc/frame_section.h"

namespace velkor {
namespace {

std::pair<uint32_t, uint64_t> PlaceOf(const FunctionFrame& frame) {
  return {frame.section, frame.address};
}

}  // namespace

CallFrames::CallFrames(const ElfFile& elf) {
  using Kind = FrameSectionReader::Kind;
  for (uint32_t i = 0; i < elf.Sections().size(); ++i) {
    const ElfSection& section = elf.Sections()[i];
    const bool forExceptions = section.name == ".eh_frame";
    if (!forExceptions && section.name != ".debug_frame" && section.name != ".zdebug_frame") {
      continue;
    }
    if (section.state == ElfSectionState::kCompressed) {
      faults_.Add(BinaryFault::kCompressed, section.name);
    }
    const Kind kind = forExceptions ? Kind::kExceptionFrames : Kind::kDebugFrames;
    FrameSectionReader(elf, i, kind, faults_).Read(frames_);
  }
  MergeEqual();
}

// A function that both sections, or several entries, tell of has the larger frame.
void CallFrames::MergeEqual() {
  std::ranges::stable_sort(frames_, {}, PlaceOf);
  size_t kept = 0;
  for (const FunctionFrame& frame : frames_) {
    if (kept > 0 && PlaceOf(frames_[kept - 1]) == PlaceOf(frame)) {
      frames_[kept - 1].bytes = std::max(frames_[kept - 1].bytes, frame.bytes);
      frames_[kept - 1].isWhole = frames_[kept - 1].isWhole && frame.isWhole;
    } else {
      frames_[kept++] = frame;
    }
  }
  frames_.resize(kept);
}

const FunctionFrame* CallFrames::Find(uint32_t section, uint64_t address) const {
  const auto found = std::ranges::lower_bound(frames_, std::pair(section, address), {}, PlaceOf);
  const bool is = found != frames_.end() && PlaceOf(*found) == std::pair(section, address);
  return is ? &*found : nullptr;
}

}  // namespace velkor
