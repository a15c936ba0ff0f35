#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

namespace velkor {

// Takes a text's beginning away. False, and nothing is taken, when it begins otherwise.
inline bool TakePrefix(std::string_view& text, std::string_view prefix) {
  const bool found = text.starts_with(prefix);
  text.remove_prefix(found ? prefix.size() : 0);
  return found;
}

// The same with a length that the compiler knows.
template <size_t kSize>
bool TakePrefix(std::string_view& text, const char (&prefix)[kSize]) {
  constexpr size_t kLength = kSize - 1;
  const bool found = text.size() >= kLength && std::memcmp(text.data(), prefix, kLength) == 0;
  text.remove_prefix(found ? kLength : 0);
  return found;
}

// The same for its end.
inline bool TakeSuffix(std::string_view& text, std::string_view suffix) {
  const bool found = text.ends_with(suffix);
  text.remove_suffix(found ? suffix.size() : 0);
  return found;
}

template <size_t kSize>
bool TakeSuffix(std::string_view& text, const char (&suffix)[kSize]) {
  constexpr size_t kLength = kSize - 1;
  const bool found = text.size() >= kLength &&
                     std::memcmp(text.data() + (text.size() - kLength), suffix, kLength) == 0;
  text.remove_suffix(found ? kLength : 0);
  return found;
}

// Of a path of any host: what stands behind the last separator.
inline std::string_view LastComponent(std::string_view path) {
  return path.substr(path.find_last_of("/\\") + 1);
}

}  // namespace velkor
