#include "core/recompute.h"

#include "core/detail/computation.h"
#include "core/detail/pending_adjustments.h"

namespace velkor {

void Recompute(StkFunctionTable& table, StkRootList& roots, bool rebuild,
               SpecificationSource* source, Event* stopEvent, StkReporter& reporter) {
  StkComputation computation(table, roots);
  if (rebuild || roots.empty()) {
    computation.Rebuild();
  }
  if (source != nullptr) {
    CheckRecursionDepths(table, *source, stopEvent, reporter);
  }
  const bool log = source != nullptr && source->Kind() == SpecificationKind::kUserFile;
  for (StkFunction* function : computation.ComputeTotals()) {
    ApplyPending(table, *function, log, reporter);
  }
}

}  // namespace velkor
