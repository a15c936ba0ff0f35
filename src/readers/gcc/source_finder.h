#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/host.h"

namespace velkor {

// Finds the sources that a compiler was told relative to the folder in which it ran: the folder of
// the call graph or one above it, the same for all sources of one unit. For one unit after the
// other; remembers which folders have those in which sources lie, so that a build whose sources are
// elsewhere is not asked for every one of them. Used in one thread.
class SourceFinder {
 public:
  explicit SourceFinder(const Host& host) : files_(host.files), codePage_(host.codePage) {}

  void BeginUnit(std::string_view graphPath);
  // None where there is no such source.
  std::optional<int64_t> ModifiedAt(std::string_view source);

 private:
  std::optional<int64_t> Search(const std::vector<std::string>& folders, std::string_view source);
  const std::vector<std::string>& FoldersWith(std::string_view below);
  std::vector<std::string> FoldersUpwards() const;

  FileSystem& files_;
  const CodePage& codePage_;
  std::string folder_;
  bool isFound_ = false;
  std::string key_;  // of both, kept for its memory
  std::unordered_map<std::string, std::vector<std::string>> foldersWith_;
};

}  // namespace velkor
