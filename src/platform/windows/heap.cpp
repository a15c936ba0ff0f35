#include "platform/heap.h"

namespace velkor {

// The system's heap takes no such advice.
void PrepareHeapForOneRun() {}

}  // namespace velkor
