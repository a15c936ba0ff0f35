#pragma once

#include <string>
#include <vector>

#include "platform/code_page.h"

namespace velkor {

// Whether the host has something of exactly this name, a dangling symbolic link included.
bool IsThere(const std::string& hostPath);

// The host path of the components below a folder ("": the current one). A component that is not
// there as spelt is looked for in a listing of its folder, ignoring letter case; from the first
// that is not there at all, the rest stays as spelt. At most one listing for each component.
std::string FindBelow(std::string folder, const std::vector<std::string>& components,
                      bool endsWithSeparator, const CodePage& codePage);

}  // namespace velkor
