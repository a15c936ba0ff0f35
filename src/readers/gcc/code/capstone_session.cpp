#include "readers/gcc/code/capstone_session.h"

namespace velkor {

CapstoneSession::CapstoneSession(cs_arch architecture, cs_mode mode) {
  if (cs_open(architecture, mode, &handle_) == CS_ERR_OK) {
    cs_option(handle_, CS_OPT_DETAIL, CS_OPT_ON);
    instruction_ = cs_malloc(handle_);
  }
}

CapstoneSession::~CapstoneSession() {
  if (instruction_ != nullptr) {
    cs_free(instruction_, 1);
  }
  if (handle_ != 0) {
    cs_close(&handle_);
  }
}

const cs_insn* CapstoneSession::Decode(std::string_view bytes, uint64_t address) {
  const auto* next = reinterpret_cast<const uint8_t*>(bytes.data());
  size_t left = bytes.size();
  const bool isKnown =
      instruction_ != nullptr && cs_disasm_iter(handle_, &next, &left, &address, instruction_);
  return isKnown ? instruction_ : nullptr;
}

}  // namespace velkor
