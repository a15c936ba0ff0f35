#pragma once

#include <string>

#include "core/function.h"
#include "messages/catalogue.h"

namespace velkor {

enum class InformationMode { kCompare, kNew };

struct AdjustmentInformationResult {
  std::string text;  // what follows "adjusted." in the log; empty when nothing changes
  bool calleesChanged = false;
};

// What adopting the adjustment changes: compared with what is in force, or with nothing.
AdjustmentInformationResult AdjustmentInformation(const StkAdjustment& adjustment,
                                                  const StkFunction& function, InformationMode mode,
                                                  const StkMessages& messages);

}  // namespace velkor
