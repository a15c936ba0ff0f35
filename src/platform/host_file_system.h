#pragma once

#include <chrono>

#include "platform/file_system.h"
#include "platform/host_paths.h"

namespace velkor {

// The host's own files. Sharing modes are advisory locks of whole files: a reader admits readers,
// a writer admits nobody, and whoever meets a lock gets FileFailure::kOther at once, where it is
// not said to wait. Only regular files are read (a FIFO or device is refused without waiting for
// it); a device may be written, and a FIFO that somebody reads.
class HostFileSystem : public FileSystem {
 public:
  static constexpr std::chrono::milliseconds kPatience{2000};

  // patience: how long a lock of another is waited for.
  explicit HostFileSystem(const HostPaths& paths, std::chrono::milliseconds patience = kPatience)
      : paths_(paths), patience_(patience) {}

  OpenResult<InputFile> OpenForRead(std::string_view path,
                                    Spelling spelling = Spelling::kExact) override;
  OpenResult<InputFile> OpenWhenFree(std::string_view path, const GiveUp& giveUp = {}) override;
  OpenResult<OutputFile> OpenForWrite(std::string_view path) override;
  bool Exists(std::string_view path, Spelling spelling = Spelling::kExact) override;
  bool IsDirectory(std::string_view path, Spelling spelling = Spelling::kExact) override;
  bool IsSameFile(std::string_view path, std::string_view input) override;
  WayToWrite HowToWrite(std::string_view path) override;
  bool LeadsOutOfFolder(std::string_view path) override;
  bool TakePermissions(std::string_view path, std::string_view from) override;
  void RemoveAbandoned(std::string_view path) override;
  bool Replace(std::string_view from, std::string_view to, const MayReplace& mayReplace = {},
               const GiveUp& giveUp = {}) override;
  bool Remove(std::string_view path) override;
  std::optional<int64_t> ModifiedAt(std::string_view path) override;
  FolderListing ListFolder(std::string_view path) override;

 private:
  const HostPaths& paths_;
  const std::chrono::milliseconds patience_;
};

}  // namespace velkor
