#pragma once

#include <vector>

namespace velkor {

struct StkFunction;

// Ordered references to functions of one table; never owns them.
using StkFunctionList = std::vector<StkFunction*>;

}  // namespace velkor
