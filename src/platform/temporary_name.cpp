#include "platform/temporary_name.h"

#include <algorithm>
#include <cstdint>
#include <random>

namespace velkor {
namespace {

constexpr std::string_view kTailDigits = "0123456789abcdef";
constexpr size_t kDigitCount = 16;
constexpr std::string_view kEnd = ".tmp";
constexpr size_t kTailLength = 1 + kDigitCount + kEnd.size();
// Shorter ones are never cut.
constexpr size_t kShortestCutName = 100;

bool IsCopySuffix(std::string_view suffix) {
  constexpr std::string_view kCopy = ".bak";
  return suffix.starts_with(kCopy) &&
         suffix.find_first_not_of("0123456789", kCopy.size()) == std::string_view::npos;
}

}  // namespace

std::string TemporaryTail() {
  std::random_device random;
  const uint64_t number = (static_cast<uint64_t>(random()) << 32) | random();
  std::string tail = ".";
  for (unsigned shift = 0; shift < 64; shift += 4) {
    tail += kTailDigits[(number >> shift) & 0xF];
  }
  return tail.append(kEnd);
}

bool IsTemporaryOf(std::string_view found, std::string_view name) {
  if (found.size() <= kTailLength) {
    return false;
  }
  const std::string_view stem = found.substr(0, found.size() - kTailLength);
  const std::string_view tail = found.substr(stem.size());
  if (tail.front() != '.' || !tail.ends_with(kEnd) ||
      tail.find_first_not_of(kTailDigits, 1) != 1 + kDigitCount) {
    return false;
  }
  if (stem.starts_with(name)) {
    return stem == name || IsCopySuffix(stem.substr(name.size()));
  }
  return stem.size() >= kShortestCutName && name.starts_with(stem);
}

}  // namespace velkor
