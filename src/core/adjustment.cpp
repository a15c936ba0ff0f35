#include "core/adjustment.h"

#include "core/function_sorting.h"

namespace velkor {

void StkAdjustment::SetCallees(const StkFunctionList& functions, const CodePage& codePage) {
  callees = functions;
  SortByName(*callees, codePage);
}

}  // namespace velkor
