#include "reports/result_output.h"

#include <cerrno>
#include <system_error>

namespace velkor::reports {
namespace {

constexpr size_t kBufferSize = size_t{64} << 10;

}  // namespace

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
  if (failure_.empty() && std::fflush(file_) != 0) {
    failure_ = std::generic_category().message(errno);
  }
  return failure_.empty();
}

void ResultOutput::WriteBuffer() {
  if (failure_.empty() && !buffer_.empty() &&
      std::fwrite(buffer_.data(), 1, buffer_.size(), file_) != buffer_.size()) {
    failure_ = std::generic_category().message(errno);
  }
  buffer_.clear();
}

}  // namespace velkor::reports
