#pragma once

#include <string>

#include "platform/host_path.h"

namespace velkor {

// The path as the system's functions take it, however long it is. Empty for what can name nothing.
std::wstring WidePath(const HostPath& path);
// Asks a function that fills a buffer of that many units until it is large enough: answers what it
// needs, with the zero unit, when it is not, else what it has written without it, and 0 when it
// fails.
template <typename Fill>
std::wstring WideResult(Fill fill) {
  std::wstring result(260, L'\0');
  for (;;) {
    const auto length = static_cast<size_t>(fill(result.data(), static_cast<unsigned>(result.size())));
    const bool fits = length < result.size();
    result.resize(length);
    if (fits) {
      return result;
    }
  }
}

}  // namespace velkor
