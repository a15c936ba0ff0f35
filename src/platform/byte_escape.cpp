#include "platform/byte_escape.h"

namespace velkor {
namespace {

constexpr std::string_view kDigits = "0123456789ABCDEF";

}  // namespace

void ByteEscape::Append(char byte, std::string& text) {
  const auto value = static_cast<unsigned char>(byte);
  text += kSubstitute;
  text += kDigits[value >> 4];
  text += kDigits[value & 0xF];
}

std::optional<char> ByteEscape::At(std::string_view text, size_t position) {
  if (text.size() - position < kLength || text[position] != kSubstitute) {
    return std::nullopt;
  }
  const size_t high = kDigits.find(text[position + 1]);
  const size_t low = kDigits.find(text[position + 2]);
  if (high == std::string_view::npos || low == std::string_view::npos) {
    return std::nullopt;
  }
  const char byte = static_cast<char>(high * kDigits.size() + low);
  const bool escaped = high >= kDigits.size() / 2 || byte == '\\' || byte == kSubstitute;
  return escaped ? std::optional(byte) : std::nullopt;
}

}  // namespace velkor
