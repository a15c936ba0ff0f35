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

// What a program asks of its files. The ways in which an open can fail are operations of their
// own: a lock of another and a missing permission are kOpenRefused.
enum class FileOperation {
  kNone,
  kOpenMissing,
  kOpenRefused,
  kRead,
  kLength,
  kCreate,
  kWrite,
  kSynchronize,
  kClose,
  kExists,
  kIsDirectory,
  kIsSameFile,
  kReplace,
  kRemove,
};

// Files in memory under exactly the names that the engine uses. Sharing is as on the host: a
// writer admits nobody, readers admit readers. A folder is there where a file below it is, or where
// it was added. Failures are set by the test: lasting ones of a path or of the device, or one call
// of an operation, which fails as it does on a host. A read then ends the data, a write takes half
// of its bytes, a close closes and loses some.
class MemoryFileSystem : public FileSystem {
 public:
  void Put(const std::string& path, std::string bytes);
  std::optional<std::string> Get(const std::string& path) const;
  void AddDirectory(const std::string& path);
  // Every open of the path fails with FileFailure::kOther.
  void Refuse(const std::string& path);
  // Another holds the path, until whoever waits for it gives up.
  void Hold(const std::string& path);
  void Release(const std::string& path);
  // Writing fails once this many bytes in total have been taken; none: no limit.
  void SetCapacity(std::optional<size_t> bytes);
  // Runs in the reading thread before each Read of the path.
  void OnRead(const std::string& path, std::function<void()> action);
  // No Read answers more than this many bytes.
  void SetReadLimit(size_t bytes);
  // Runs before each replacing, as another program may work at that moment.
  void BeforeReplace(std::function<void()> action);
  std::vector<std::string> Paths() const;
  // Files that are open for reading or writing.
  int OpenFiles() const;

  struct Fault {
    FileOperation operation = FileOperation::kNone;
    int callsLeft = 0;
    bool hit = false;  // the call was reached
    std::string path;  // what it was about
  };
  // From now on the call of that number (the first is 1) of the operation fails, and no other.
  void FailAt(FileOperation operation, int call);
  void ClearFault() { FailAt(FileOperation::kNone, 0); }
  Fault GetFault() const;

  OpenResult<InputFile> OpenForRead(std::string_view path,
                                    Spelling spelling = Spelling::kExact) override;
  OpenResult<InputFile> OpenWhenFree(std::string_view path, const GiveUp& giveUp = {}) override;
  OpenResult<OutputFile> OpenForWrite(std::string_view path) override;
  bool Exists(std::string_view path, Spelling spelling = Spelling::kExact) override;
  bool IsDirectory(std::string_view path, Spelling spelling = Spelling::kExact) override;
  bool IsSameFile(std::string_view path, std::string_view input) override;
  bool Replace(std::string_view from, std::string_view to, const MayReplace& mayReplace = {},
               const GiveUp& giveUp = {}) override;
  bool Remove(std::string_view path) override;
  // What SetModifiedAt said, else 0.
  std::optional<int64_t> ModifiedAt(std::string_view path) override;
  void SetModifiedAt(const std::string& path, int64_t time);
  FolderListing ListFolder(std::string_view path) override;

 private:
  class Input;
  class Output;

  struct Entry {
    std::shared_ptr<std::string> bytes = std::make_shared<std::string>();
    int readers = 0;
    bool written = false;
    std::function<void()> onRead;
  };

  // Under the mutex.
  bool IsThere(std::string_view path) const;
  bool HasFilesBelow(std::string_view folder) const;
  bool IsClosedTo(std::string_view path) const;
  // Not under the mutex. Does not wait where nobody could give up.
  void WaitWhileHeld(std::string_view path, const GiveUp& giveUp) const;
  // Whether this call is the one.
  bool Fails(FileOperation operation, std::string_view path);

  mutable std::mutex mutex_;
  std::map<std::string, Entry, std::less<>> entries_;
  std::set<std::string, std::less<>> directories_;
  std::set<std::string, std::less<>> refused_;
  std::set<std::string, std::less<>> held_;
  std::map<std::string, int64_t, std::less<>> times_;
  std::map<std::string, uint64_t, std::less<>> folderNumbers_;  // of those that were listed
  std::optional<size_t> capacity_;
  size_t readLimit_ = SIZE_MAX;
  std::function<void()> beforeReplace_;
  Fault fault_;
};

}  // namespace velkor::testing
