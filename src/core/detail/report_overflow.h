#pragma once

#include <string_view>

#include "core/function_table.h"
#include "messages/reporter.h"

namespace velkor {

// User-interface thread, after an interactive adjustment of the function: W9465 or W9466 for it
// (under the given name) and for each top-level function above it that is over the limit.
void ReportOverflow(const StkFunctionTable& table, const StkFunction& function,
                    std::string_view name, StkReporter& reporter);

}  // namespace velkor
