#pragma once

#include <sys/stat.h>
#include <utility>

#include "platform/file_system.h"
#include "platform/host_path.h"
#include "platform/patience.h"

namespace velkor {

// An open file descriptor of the host, closed by its destructor. Never inherited by other programs.
class HostFile {
 public:
  // Does not wait for anything, a FIFO without a partner included. flags: those of open.
  HostFile(const HostPath& path, int flags);
  HostFile(HostFile&& other) noexcept
      : descriptor_(std::exchange(other.descriptor_, -1)), error_(other.error_) {}
  HostFile(const HostFile&) = delete;
  HostFile& operator=(const HostFile&) = delete;
  HostFile& operator=(HostFile&&) = delete;
  ~HostFile() { Close(); }

  bool IsOpen() const { return descriptor_ >= 0; }
  int Descriptor() const { return descriptor_; }
  // Why it is not open.
  FileFailure Failure() const;
  struct stat Status() const;
  // False when another holds the file, and still does when the patience is over; true on file
  // systems that know no locks.
  bool Lock(bool exclusively, const Patience& patience = {}) const;
  // This one is now known to be the only one that holds the file.
  bool LockAlone() const;
  // False when the data may not have reached the file.
  bool Close();

 private:
  int descriptor_;
  int error_ = 0;
};

}  // namespace velkor
