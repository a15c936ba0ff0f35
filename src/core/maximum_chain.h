#pragma once

#include "core/function.h"

namespace velkor {

// One chain with the maximum stack, from start down: at each function the first callee (callees,
// then extra callees) whose total is the largest, until nothing is called or a function of the
// chain comes again, which then stands once more at its end. Linear in the calls of the chain.
StkFunctionList FirstMaximumChain(StkFunction& start);

}  // namespace velkor
