#pragma once

#include <string>
#include <vector>

namespace velkor::testing {

// An assembler source module of the file C:\p\<file>. functions: "main 10 f g" lines: C name, frame
// size, callees; "static" before the name makes it one, and "indirect" before it gives it an
// indirect call.
std::string ModuleText(const std::string& file, const std::vector<std::string>& functions);

}  // namespace velkor::testing
