#include "platform/standard_streams.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>
#include <unistd.h>
#include <utility>

namespace velkor {
namespace {

class TakenInput : public InputFile {
 public:
  explicit TakenInput(std::string bytes) : bytes_(std::move(bytes)) {}

  size_t Read(char* buffer, size_t size) override {
    const size_t read = bytes_.copy(buffer, size, position_);
    position_ += read;
    return read;
  }
  uint64_t Length() const override { return bytes_.size(); }

 private:
  const std::string bytes_;
  size_t position_ = 0;
};

class StandardOutput : public OutputFile {
 public:
  bool Write(std::string_view bytes) override {
    while (!bytes.empty() && !readerGone_) {
      const ssize_t written = write(STDOUT_FILENO, bytes.data(), bytes.size());
      if (written < 0 && errno != EINTR) {
        readerGone_ = errno == EPIPE;
        return readerGone_;
      }
      bytes.remove_prefix(written < 0 ? 0 : static_cast<size_t>(written));
    }
    return true;
  }
  bool Synchronize() override { return true; }
  bool Close() override { return true; }

 private:
  bool readerGone_ = false;
};

}  // namespace

std::unique_ptr<InputFile> OpenStandardInput() {
  constexpr size_t kMostBytes = size_t{256} << 20;
  std::array<char, 65536> buffer{};
  std::string bytes;
  for (;;) {
    const ssize_t taken = read(STDIN_FILENO, buffer.data(), buffer.size());
    if (taken == 0) {
      return std::make_unique<TakenInput>(std::move(bytes));
    }
    if (taken < 0 ? errno != EINTR : bytes.size() > kMostBytes) {
      return nullptr;
    }
    bytes.append(buffer.data(), taken < 0 ? 0 : static_cast<size_t>(taken));
  }
}

std::unique_ptr<OutputFile> OpenStandardOutput() {
  return std::make_unique<StandardOutput>();
}

}  // namespace velkor
