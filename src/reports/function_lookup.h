#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/function_table.h"

namespace velkor::reports {

// Functions are named as specification files name them: "main", "util.c#step", "[memcpy]". The
// name in full, as FunctionSpecName gives it, comes first; then a shorter one, such as that of a
// static function without its file. None, or several that the name fits equally well, leave the
// choice to the user.
StkFunctionList FindFunctions(const StkFunctionTable& functions, std::string_view name);

// Names that the user may have meant, best first, at most ten.
std::vector<std::string> NearNames(const StkFunctionTable& functions, std::string_view name);

// Says why the name stands for no single function, with what it may mean; bytes of the code page.
std::string LookupError(const StkFunctionTable& functions, std::string_view name,
                        const StkFunctionList& found);

}  // namespace velkor::reports
