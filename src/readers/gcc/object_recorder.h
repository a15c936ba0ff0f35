#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "readers/gcc/call_frames.h"
#include "readers/gcc/elf_file.h"
#include "readers/gcc/object_facts.h"
#include "readers/gcc/unit_recording.h"

namespace velkor {

// Records what an object tells of its functions, beside a call graph or alone. Lives for one
// object, over its bytes.
class ObjectRecorder {
 public:
  ObjectRecorder(std::string_view bytes, UnitRecording& recording)
      : elf_(bytes), facts_(elf_), frames_(elf_), recording_(recording) {
    functionOf_.assign(facts_.Functions().size(), UnitRecording::kNone);
  }

  const ElfFile& Elf() const { return elf_; }
  const ObjectFacts& Facts() const { return facts_; }
  // Everything that could not be used.
  BinaryFaults Faults() const;

  // A function of the object has been recorded.
  void SetRecorded(uint32_t objectFunction, uint32_t function) {
    functionOf_[objectFunction] = function;
  }
  // Where its code, or that of an alias of it, is recorded.
  uint32_t FunctionOf(uint32_t objectFunction) const;
  // All that are not recorded yet: aliases of what is, thunks of C++, and functions whose size
  // nothing tells. The last ones are answered.
  std::vector<uint32_t> RecordOthers();
  // What call frame information says of the function and of its part that is kept elsewhere.
  uint64_t FrameBytes(uint32_t objectFunction) const;
  void RecordCall(uint32_t caller, const ObjectCall& call) {
    recording_.calls.push_back(CallOf(caller, call.target, call.targetFunction));
  }
  // Once all functions are recorded.
  void RecordTakenAddresses();
  // Whose address functions take that call what creates tasks. After all calls.
  void RecordTaskUses();

  static UnitRecording::Reach ReachOf(const ObjectFunction& function);

 private:
  uint32_t Record(uint32_t objectFunction, bool isAlias);
  void RecordAlias(uint32_t objectFunction, uint32_t function);
  bool RecordThunk(uint32_t objectFunction);
  // Of a function that the object names so and may hold; kNone where it is not recorded.
  uint32_t RecordedTarget(std::string_view name, uint32_t objectFunction) const;
  // Of the recorded function, or another one by its name.
  UnitRecording::Call CallOf(uint32_t caller, std::string_view target, uint32_t objectFunction);

  ElfFile elf_;
  ObjectFacts facts_;
  CallFrames frames_;
  UnitRecording& recording_;
  std::vector<uint32_t> functionOf_;  // in the recording, by number in the object
};

// "a, b and 3 more"
std::string NamesOf(const std::vector<std::string_view>& names);

// "12.2.1" of "GCC: (15:12.2.rel1-1) 12.2.1 20221205".
std::string CompilerVersion(std::string_view compiler);

}  // namespace velkor
