#pragma once

#include <span>
#include <vector>

namespace velkor {

struct StkFunction;

// Ordered references to functions of one table; never owns them.
using StkFunctionList = std::vector<StkFunction*>;
// The same where the references stand elsewhere, and for as long as they do.
using StkFunctionSpan = std::span<StkFunction* const>;

}  // namespace velkor
