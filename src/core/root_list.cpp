#include "core/root_list.h"

namespace velkor {

void StkRootList::Clear() {
  functions_.clear();
  ForgetOrder();
}

void StkRootList::ForgetOrder() {
  order_ = ComputationOrder();
}

}  // namespace velkor
