#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/file_system.h"

namespace velkor::testing {

// Files in memory under exactly the names that the engine uses. Sharing is as on the host: a
// writer admits nobody, readers admit readers. A folder is there where a file below it is, or where
// it was added. Failures are set by the test.
class MemoryFileSystem : public FileSystem {
 public:
  void Put(const std::string& path, std::string bytes);
  std::optional<std::string> Get(const std::string& path) const;
  void AddDirectory(const std::string& path);
  // Every open of the path fails with FileFailure::kOther.
  void Refuse(const std::string& path);
  // Writing fails once this many bytes in total have been taken; none: no limit.
  void SetCapacity(std::optional<size_t> bytes);
  // Runs in the reading thread before each Read of the path.
  void OnRead(const std::string& path, std::function<void()> action);
  // No Read answers more than this many bytes.
  void SetReadLimit(size_t bytes);
  std::vector<std::string> Paths() const;
  // Files that are open for reading or writing.
  int OpenFiles() const;

  OpenResult<InputFile> OpenForRead(std::string_view path) override;
  OpenResult<OutputFile> OpenForWrite(std::string_view path) override;
  bool Exists(std::string_view path) override;
  bool IsDirectory(std::string_view path) override;
  bool IsSameFile(std::string_view left, std::string_view right) override;
  bool Replace(std::string_view from, std::string_view to,
               const MayReplace& mayReplace = {}) override;
  bool Remove(std::string_view path) override;
  FolderListing ListFolder(std::string_view path) override;

 private:
  class Input;
  class Held;
  class Output;

  struct Entry {
    std::shared_ptr<std::string> bytes = std::make_shared<std::string>();
    int readers = 0;
    bool written = false;
    std::function<void()> onRead;
  };

  mutable std::mutex mutex_;
  std::map<std::string, Entry, std::less<>> entries_;
  std::set<std::string, std::less<>> directories_;
  std::set<std::string, std::less<>> refused_;
  std::map<std::string, uint64_t, std::less<>> folderNumbers_;  // of those that were listed
  std::optional<size_t> capacity_;
  size_t readLimit_ = SIZE_MAX;
};

}  // namespace velkor::testing
