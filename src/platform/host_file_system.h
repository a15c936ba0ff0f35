#pragma once

#include "platform/file_system.h"
#include "platform/host_paths.h"

namespace velkor {

// The host's own files. Sharing modes are advisory locks of whole files: a reader admits readers,
// a writer admits nobody, and whoever meets a lock gets FileFailure::kOther at once. Only regular
// files are read (a FIFO or device is refused without waiting for it); a device may be written.
class HostFileSystem : public FileSystem {
 public:
  explicit HostFileSystem(const HostPaths& paths) : paths_(paths) {}

  OpenResult<InputFile> OpenForRead(std::string_view path,
                                    Spelling spelling = Spelling::kExact) override;
  OpenResult<OutputFile> OpenForWrite(std::string_view path) override;
  bool Exists(std::string_view path, Spelling spelling = Spelling::kExact) override;
  bool IsDirectory(std::string_view path, Spelling spelling = Spelling::kExact) override;
  bool IsSameFile(std::string_view path, std::string_view input) override;
  bool Replace(std::string_view from, std::string_view to,
               const MayReplace& mayReplace = {}) override;
  bool Remove(std::string_view path) override;
  std::optional<int64_t> ModifiedAt(std::string_view path) override;
  FolderListing ListFolder(std::string_view path) override;

 private:
  const HostPaths& paths_;
};

}  // namespace velkor
