#include "files/text_output_file.h"

#include <algorithm>
#include <utility>

namespace velkor {

namespace {

constexpr size_t kWriteBufferSize = 65536;

}  // namespace

TextOutputFile::TextOutputFile(std::unique_ptr<OutputFile> file) : file_(std::move(file)) {
  buffer_.reserve(kWriteBufferSize);
}

TextOutputFile::~TextOutputFile() {
  static_cast<void>(Close());
}

void TextOutputFile::SetLimits(uint32_t maxLines, uint32_t maxCharsPerLine, bool wrapLongLines) {
  maxLines_ = maxLines;
  maxCharsPerLine_ = maxCharsPerLine;
  wrapLongLines_ = wrapLongLines;
}

bool TextOutputFile::WriteString(std::string_view text) {
  if (file_ == nullptr || writeFailed_) {
    return false;
  }
  const bool limited = maxLines_ != 0 || maxCharsPerLine_ != 0;
  return limited ? WriteLimited(text) : WriteUnlimited(text);
}

bool TextOutputFile::WriteUnlimited(std::string_view text) {
  while (!text.empty()) {
    const std::string_view span = text.substr(0, text.find('\n'));
    if (!Put(span)) {
      return false;
    }
    text.remove_prefix(span.size());
    if (!text.empty()) {
      if (!Put("\r\n")) {
        return false;
      }
      text.remove_prefix(1);
    }
  }
  return true;
}

size_t TextOutputFile::RoomInLine(std::string_view text) const {
  const size_t left = maxCharsPerLine_ - std::min(maxCharsPerLine_, charsInLine_);
  if (maxCharsPerLine_ == 0 || text.size() <= left) {
    return text.size();
  }
  return codePage_ != nullptr ? codePage_->CutLength(text, left) : left;
}

bool TextOutputFile::WriteLimited(std::string_view text) {
  while (!text.empty()) {
    if (maxLines_ != 0 && linesWritten_ >= maxLines_) {
      return FailAtLimit(lineLimitReached_);
    }
    if (text.front() == '\n') {
      if (!EndLine()) {
        return false;
      }
      text.remove_prefix(1);
      continue;
    }
    const size_t room = RoomInLine(text);
    if (room == 0) {
      if (!wrapLongLines_) {
        return FailAtLimit(charLimitReached_);
      }
      if (!EndLine()) {
        return false;
      }
      continue;
    }
    // Only as far as the line has room, so that a long text that wraps is searched once.
    const std::string_view part = text.substr(0, room);
    const std::string_view span = part.substr(0, part.find('\n'));
    if (!Put(span)) {
      return false;
    }
    charsInLine_ += static_cast<uint32_t>(span.size());
    text.remove_prefix(span.size());
  }
  return true;
}

bool TextOutputFile::EndLine() {
  ++linesWritten_;
  charsInLine_ = 0;
  return Put("\r\n");
}

bool TextOutputFile::FailAtLimit(bool& reached) {
  static_cast<void>(Flush());  // the limit is what the caller reports, whatever the device says
  reached = true;
  writeFailed_ = true;
  return false;
}

bool TextOutputFile::Put(std::string_view bytes) {
  if (buffer_.size() + bytes.size() < kWriteBufferSize) {
    buffer_ += bytes;
    return true;
  }
  if (!Flush()) {
    return false;
  }
  if (bytes.size() < kWriteBufferSize) {
    buffer_ += bytes;
    return true;
  }
  writeFailed_ = !file_->Write(bytes);
  return !writeFailed_;
}

bool TextOutputFile::Flush() {
  if (file_ == nullptr || writeFailed_) {
    return false;
  }
  if (!buffer_.empty()) {
    writeFailed_ = !file_->Write(buffer_);
    buffer_.clear();
  }
  return !writeFailed_;
}

bool TextOutputFile::Synchronize() {
  if (!Flush()) {
    return false;
  }
  writeFailed_ = !file_->Synchronize();
  return !writeFailed_;
}

bool TextOutputFile::Close() {
  if (file_ == nullptr) {
    return true;
  }
  const bool flushed = Flush();
  const bool closed = file_->Close();
  file_.reset();
  return flushed && closed;
}

}  // namespace velkor
