#pragma once

#include <string>
#include <vector>

#include "platform/host_names.h"
#include "platform/host_path.h"

namespace velkor {

// Whether the host has something of exactly this name, a dangling symbolic link included.
bool IsThere(const HostPath& path);

// The components of a text below a folder (empty: the current one), exactly as spelt.
HostPath JoinBelow(HostPath folder, const std::vector<std::string>& components,
                   const HostNames& names);
// The same, but a component that is not there as spelt is looked for in a listing of its folder,
// ignoring letter case; from the first that is not there at all, or of which several are there,
// the rest stays as spelt. At most one listing for each component.
HostPath FindBelow(HostPath folder, const std::vector<std::string>& components,
                   const HostNames& names);

}  // namespace velkor
