#pragma once

#include <string>

namespace velkor {

// Gives one file who may do what with another. True too where the file system keeps no such thing.
bool CopyPermissions(const std::wstring& from, const std::wstring& to);

}  // namespace velkor
