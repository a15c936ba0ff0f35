#pragma once

namespace velkor {

// Asks the processor for the memory at an address that will soon be read, and does not wait for
// it. Nothing else happens, also when the address is not readable.
inline void Fetch(const void* address) {
#ifdef __GNUC__
  __builtin_prefetch(address);
#else
  static_cast<void>(address);
#endif
}

}  // namespace velkor
