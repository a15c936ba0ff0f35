#include "platform/windows/wide_path.h"

#include <optional>
#include <windows.h>

#include "platform/windows/wide_text.h"

namespace velkor {
namespace {

// A folder's path may be 12 units shorter than a file's, which may have MAX_PATH.
constexpr size_t kLongestPlainPath = MAX_PATH - 13;

}  // namespace

std::wstring WidePath(const HostPath& path) {
  const std::optional<std::wstring> wide =
      path.IsUsable() && !path.Bytes().empty() ? ToWide(path.Bytes()) : std::nullopt;
  if (!wide) {
    return {};
  }
  std::wstring full = WideResult([&](wchar_t* buffer, unsigned size) {
    return GetFullPathNameW(wide->c_str(), size, buffer, nullptr);
  });
  if (full.size() <= kLongestPlainPath || full.starts_with(L"\\\\?\\") ||
      full.starts_with(L"\\\\.\\")) {
    return full;
  }
  return full.starts_with(L"\\\\") ? L"\\\\?\\UNC\\" + full.substr(2) : L"\\\\?\\" + full;
}

}  // namespace velkor
