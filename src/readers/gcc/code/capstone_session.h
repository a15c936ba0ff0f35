#pragma once

#include <capstone/capstone.h>
#include <cstdint>
#include <string_view>

namespace velkor {

// One mode of the disassembler, with the details of instructions. One thread at a time.
class CapstoneSession {
 public:
  CapstoneSession(cs_arch architecture, cs_mode mode);
  ~CapstoneSession();
  CapstoneSession(const CapstoneSession&) = delete;
  CapstoneSession& operator=(const CapstoneSession&) = delete;

  // The instruction at the begin of the bytes, as if it stood at that address; none where it is
  // not known. Valid until the next one.
  const cs_insn* Decode(std::string_view bytes, uint64_t address);
  csh Handle() const { return handle_; }

 private:
  csh handle_ = 0;
  cs_insn* instruction_ = nullptr;  // none: this mode is not to be had
};

}  // namespace velkor
