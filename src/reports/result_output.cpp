#include "reports/result_output.h"

#include <cerrno>
#include <system_error>

namespace velkor::reports {
namespace {

constexpr size_t kBufferSize = size_t{64} << 10;

}  // namespace

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
  buffer_ += text;
  if (buffer_.size() >= kBufferSize) {
    WriteBuffer();
  }
}

void ResultOutput::Put(char c) {
  buffer_.push_back(c);
  if (buffer_.size() >= kBufferSize) {
    WriteBuffer();
  }
}

bool ResultOutput::Finish() {
  WriteBuffer();
  return !failed_ || readerGone_;
}

void ResultOutput::WriteBuffer() {
  failed_ = failed_ || !sink_(buffer_);
  buffer_.clear();
}

}  // namespace velkor::reports
