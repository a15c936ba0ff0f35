#include "terminal.h"

#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace velkor::testing {

ErrorFile::ErrorFile(const std::string& path, bool isTerminal)
    : file_(open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600)), descriptor_(file_) {
  if (isTerminal) {
    master_ = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (master_ >= 0 && grantpt(master_) == 0 && unlockpt(master_) == 0) {
      descriptor_ = open(ptsname(master_), O_RDWR | O_NOCTTY | O_CLOEXEC);
    }
  }
}

ErrorFile::~ErrorFile() {
  EndCopying();
  close(file_);
}

void ErrorFile::BeginCopying() {
  if (master_ < 0) {
    return;
  }
  close(descriptor_);
  copying_ = std::thread([this] {
    char buffer[4096];
    for (ssize_t taken = 0; (taken = read(master_, buffer, sizeof buffer)) > 0;) {
      if (write(file_, buffer, static_cast<size_t>(taken)) != taken) {
        return;
      }
    }
  });
}

void ErrorFile::EndCopying() {
  if (copying_.joinable()) {
    copying_.join();
    close(master_);
  }
}

}  // namespace velkor::testing
