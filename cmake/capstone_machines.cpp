// What stands in for the machines of Capstone that velkor does not decode with it. Its archive
// holds all of them, each with tables of pointers that the start of every run would have to set
// right: half of the program, and most of the time of a short run. Whoever asks for one of them is
// told that it is not there.
#include <capstone/capstone.h>
#include <cstddef>

#define VELKOR_LEAVE_OUT(machine)                                  \
  extern "C" cs_err machine##_global_init(void*) {                 \
    return CS_ERR_ARCH;                                            \
  }                                                                \
  extern "C" cs_err machine##_option(void*, cs_opt_type, size_t) { \
    return CS_ERR_ARCH;                                            \
  }

VELKOR_LEAVE_OUT(AArch64)
VELKOR_LEAVE_OUT(EVM)
VELKOR_LEAVE_OUT(M680X)
VELKOR_LEAVE_OUT(M68K)
VELKOR_LEAVE_OUT(Mips)
VELKOR_LEAVE_OUT(PPC)
VELKOR_LEAVE_OUT(Sparc)
VELKOR_LEAVE_OUT(SystemZ)
VELKOR_LEAVE_OUT(TMS320C64x)
VELKOR_LEAVE_OUT(XCore)
