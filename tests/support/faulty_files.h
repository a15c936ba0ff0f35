#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <string_view>

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

std::string_view NameOf(FileOperation operation);

// Passes everything on to another file system, but for one call: it fails as the operation does on
// a host. A read ends the data, a write takes half of its bytes, a close closes and loses some.
class FaultyFileSystem : public FileSystem {
 public:
  explicit FaultyFileSystem(FileSystem& files) : files_(files) {}

  // From now on the call of that number (the first is 1) of the operation fails, and no other.
  void FailAt(FileOperation operation, int call);
  // Runs before each replacing, as another program may work at that moment.
  void BeforeReplace(std::function<void()> action);
  void Clear() { FailAt(FileOperation::kNone, 0); }
  // The call was reached.
  bool Hit() const;
  // It made a difference: it had something to read, the file was there, ...
  bool Felt() const;
  // What it was about.
  std::string HitPath() const;

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
  class Output;

  // Whether this call is the one; felt: it would have succeeded.
  bool Fails(FileOperation operation, std::string_view path, bool felt = true);

  FileSystem& files_;
  mutable std::mutex mutex_;
  FileOperation operation_ = FileOperation::kNone;
  int callsLeft_ = 0;
  bool hit_ = false;
  bool felt_ = false;
  std::string hitPath_;
  std::function<void()> beforeReplace_;
};

}  // namespace velkor::testing
