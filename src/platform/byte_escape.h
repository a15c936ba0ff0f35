#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace velkor {

// A byte of a host path that the text of a project cannot hold: the substitute character and two
// hexadecimal digits. Only a byte beyond ASCII, "\" and the substitute character itself are ever
// escaped: nothing else reads as an escape.
struct ByteEscape {
  static constexpr char kSubstitute = '\x1A';
  static constexpr size_t kLength = 3;

  static void Append(char byte, std::string& text);
  // None when there is no escape at the position.
  static std::optional<char> At(std::string_view text, size_t position);
};

}  // namespace velkor
