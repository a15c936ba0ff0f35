#include "platform/heap.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#ifdef __GLIBC__
#include <initializer_list>
#include <malloc.h>
#include <sys/mman.h>
#include <sys/resource.h>
#endif

namespace velkor {

namespace {

#ifdef __GLIBC__

constexpr size_t kLargePage = size_t{1} << 21;
constexpr size_t kReserved = size_t{1} << 29;  // addresses, not memory: untouched pages cost none
constexpr int kNever = INT32_MAX;

// Where addresses are scarce, those kept back would be missed.
bool AddressesAbound() {
  for (const auto resource : {RLIMIT_AS, RLIMIT_DATA}) {
    rlimit limit{};
    if (getrlimit(resource, &limit) != 0 || limit.rlim_cur != RLIM_INFINITY) {
      return false;
    }
  }
  return sizeof(void*) >= 8;
}

// Whether the heap grows at its end only and hardly ever shrinks. A replaced heap may answer no, or
// take the settings without effect.
bool KeepInOnePiece() {
  // NOLINTBEGIN(concurrency-mt-unsafe): there are no other threads yet
  return mallopt(M_ARENA_MAX, 1) == 1 && mallopt(M_MMAP_MAX, 0) == 1 &&
         mallopt(M_TRIM_THRESHOLD, kNever) == 1;
  // NOLINTEND(concurrency-mt-unsafe)
}

// What is freed at the heap's end stays part of it, and so does the advice given for its addresses.
void AskForLargePages() {
  auto* const reserved = static_cast<char*>(std::malloc(kReserved));
  if (reserved == nullptr) {
    return;
  }
  const size_t toLargePage = -reinterpret_cast<uintptr_t>(reserved) % kLargePage;
  static_cast<void>(madvise(reserved + toLargePage, kReserved - kLargePage, MADV_HUGEPAGE));
  std::free(reserved);
}

#endif

}  // namespace

void PrepareHeapForOneRun() {
#ifdef __GLIBC__
  if (AddressesAbound() && KeepInOnePiece()) {
    AskForLargePages();
  }
#endif
}

}  // namespace velkor
