#pragma once

#include <string_view>

namespace velkor {

// Takes a text's beginning away. False, and nothing is taken, when it begins otherwise.
inline bool TakePrefix(std::string_view& text, std::string_view prefix) {
  const bool found = text.starts_with(prefix);
  text.remove_prefix(found ? prefix.size() : 0);
  return found;
}

// The same for its end.
inline bool TakeSuffix(std::string_view& text, std::string_view suffix) {
  const bool found = text.ends_with(suffix);
  text.remove_suffix(found ? suffix.size() : 0);
  return found;
}

// Of a path of any host: what stands behind the last separator.
inline std::string_view LastComponent(std::string_view path) {
  return path.substr(path.find_last_of("/\\") + 1);
}

}  // namespace velkor
