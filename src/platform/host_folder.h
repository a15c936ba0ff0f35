#pragma once

#include "platform/folder_listing.h"
#include "platform/host_path.h"

namespace velkor {

// Whether the host has something of exactly this name, a dangling symbolic link included.
bool IsThere(const HostPath& path);
FolderListing ListHostFolder(const HostPath& path);

}  // namespace velkor
