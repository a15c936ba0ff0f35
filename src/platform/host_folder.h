#pragma once

#include "platform/folder_listing.h"
#include "platform/host_path.h"

namespace velkor {

FolderListing ListHostFolder(const HostPath& path);

}  // namespace velkor
