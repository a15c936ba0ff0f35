#include "core/adjustment.h"

namespace velkor {

void StkAdjustment::SetCallees(const StkFunctionList& functions, const CodePage& codePage) {
  callees = functions;
  SortByName(*callees, codePage);
}

}  // namespace velkor
