#include "platform/posix/host_file.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace velkor {
namespace {

constexpr mode_t kNewFileMode = 0666;

// 0 or why it is not locked.
int TryLock(int descriptor, bool exclusively) {
  int result = -1;
  do {
    result = flock(descriptor, (exclusively ? LOCK_EX : LOCK_SH) | LOCK_NB);
  } while (result < 0 && errno == EINTR);
  return result == 0 ? 0 : errno;
}

int Open(const HostPath& path, int flags) {
  if (!path.IsUsable()) {
    errno = ENOENT;
    return -1;
  }
  int descriptor = -1;
  do {
    descriptor = open(path.Text(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, kNewFileMode);
  } while (descriptor < 0 && errno == EINTR);
  return descriptor;
}

}  // namespace

HostFile::HostFile(const HostPath& path, int flags) : descriptor_(Open(path, flags)) {
  error_ = IsOpen() ? 0 : errno;
}

FileFailure HostFile::Failure() const {
  if (IsOpen()) {
    return FileFailure::kNone;
  }
  return error_ == ENOENT || error_ == ENOTDIR ? FileFailure::kNotFound : FileFailure::kOther;
}

struct stat HostFile::Status() const {
  struct stat status {};
  fstat(descriptor_, &status);
  return status;
}

bool HostFile::Lock(bool exclusively, const Patience& patience) const {
  int failure = TryLock(descriptor_, exclusively);
  while (failure == EWOULDBLOCK && !patience.IsOver()) {
    std::this_thread::sleep_for(Patience::kPause);
    failure = TryLock(descriptor_, exclusively);
  }
  return failure != EWOULDBLOCK;
}

bool HostFile::LockAlone() const {
  return TryLock(descriptor_, true) == 0;
}

bool HostFile::Close() {
  const int descriptor = std::exchange(descriptor_, -1);
  // After an interruption the descriptor is gone all the same; nothing was lost.
  return descriptor < 0 || close(descriptor) == 0 || errno == EINTR;
}

}  // namespace velkor
