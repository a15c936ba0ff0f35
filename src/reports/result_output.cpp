#include "reports/result_output.h"

#include <cerrno>
#include <system_error>

namespace velkor::reports {

ResultOutput::ResultOutput(std::FILE* file)
    : sink_([this, file](std::string_view text) {
        const bool written =
            std::fwrite(text.data(), 1, text.size(), file) == text.size() && std::fflush(file) == 0;
        if (!written) {
          readerGone_ = errno == EPIPE;
          failure_ = std::generic_category().message(errno);
        }
        return written;
      }) {}

void ResultOutput::Write(std::string_view text) {
  while (!text.empty()) {
    if (size_ == kBufferSize) {
      WriteBuffer();
    }
    const size_t taken = text.copy(buffer_.get() + size_, kBufferSize - size_);
    size_ += taken;
    text.remove_prefix(taken);
  }
}

bool ResultOutput::Finish() {
  WriteBuffer();
  return !failed_ || readerGone_;
}

void ResultOutput::WriteBuffer() {
  failed_ = failed_ || !sink_({buffer_.get(), size_});
  size_ = 0;
}

}  // namespace velkor::reports
