#pragma once

#include <string>

#include "platform/folder_listing.h"

namespace velkor {

FolderListing ListHostFolder(const std::string& hostPath);

}  // namespace velkor
