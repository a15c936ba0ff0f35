#include "platform/standard_streams.h"

#include <array>
#include <cerrno>
#include <string>
#include <unistd.h>
#include <utility>

#include "platform/taken_input.h"

namespace velkor {
namespace {

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
  std::array<char, 65536> buffer{};
  std::string bytes;
  for (;;) {
    const ssize_t taken = read(STDIN_FILENO, buffer.data(), buffer.size());
    if (taken == 0) {
      return std::make_unique<TakenInput>(std::move(bytes));
    }
    if (taken < 0 ? errno != EINTR : bytes.size() > TakenInput::kMostBytes) {
      return nullptr;
    }
    bytes.append(buffer.data(), taken < 0 ? 0 : static_cast<size_t>(taken));
  }
}

std::unique_ptr<OutputFile> OpenStandardOutput() {
  return std::make_unique<StandardOutput>();
}

}  // namespace velkor
