#pragma once

#include <optional>
#include <string>
#include <windows.h>

namespace velkor {

// Symbolic links and junctions.

bool IsLink(const WIN32_FIND_DATAW& found);
bool IsLink(const std::wstring& path);
// The path of what a path leads to, without links, as the system spells it; none where nothing is.
std::optional<std::wstring> FinalPath(const std::wstring& path);
// The path itself where no link stands at its end, or a link to nothing.
std::wstring FollowLinks(const std::wstring& path);

}  // namespace velkor
