#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace velkor {

struct FolderEntry {
  enum class Kind : uint8_t {
    kFile,
    kFolder,
    kOther,  // a device, or a link to nothing
  };

  std::string name;
  Kind kind = Kind::kOther;  // of what a symbolic link leads to
  bool isLink = false;
};

// What a folder held at one moment.
struct FolderListing {
  bool isWhole = false;                      // false: it could not be read, or not to its end
  std::pair<uint64_t, uint64_t> identity{};  // the same for one folder under all its names
  std::vector<FolderEntry> entries;          // in no order, without "." and ".."
};

}  // namespace velkor
