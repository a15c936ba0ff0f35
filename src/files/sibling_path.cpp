#include "files/sibling_path.h"

#include <cstdint>
#include <random>

#include "files/paths.h"

namespace velkor {

std::string SiblingPath(std::string_view path, const CodePage& codePage) {
  constexpr size_t kMaxNamePart = 200;  // leaves room for the rest in one component
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::random_device random;
  const uint64_t number = (static_cast<uint64_t>(random()) << 32) | random();
  std::string name(FileNamePart(path, codePage));
  name.resize(codePage.CutLength(name, kMaxNamePart));
  name += '.';
  for (unsigned shift = 0; shift < 64; shift += 4) {
    name += kDigits[(number >> shift) & 0xF];
  }
  return std::string(DirectoryPart(path, codePage)) + name + ".tmp";
}

}  // namespace velkor
