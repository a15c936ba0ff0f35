#include "files/text_writer.h"

#include <algorithm>

namespace velkor {

namespace {

constexpr size_t kChunkSize = 65536;
constexpr char kEndOfText = '\x1A';

}  // namespace

StkTextWriter::~StkTextWriter() {
  Abort();
}

StkTextWriter::Opened StkTextWriter::OpenForRead(std::string_view path) {
  path_ = path;
  OpenResult<InputFile> opened = host_.files.OpenForRead(path);
  if (opened.failure == FileFailure::kNotFound) {
    return {false, MessageKey::kW9431};
  }
  if (opened.failure != FileFailure::kNone) {
    return {false, MessageKey::kW9401};
  }
  input_ = std::move(opened.file);
  buffer_.resize(kChunkSize);
  return {true, {}};
}

StkTextWriter::Opened StkTextWriter::OpenForWrite(std::string_view path) {
  path_ = path;
  OpenResult<OutputFile> opened = host_.files.OpenForWrite(path);
  if (opened.failure != FileFailure::kNone) {
    return {false, MessageKey::kW9402};
  }
  output_ = std::move(opened.file);
  buffer_.reserve(kChunkSize);
  return {true, {}};
}

void StkTextWriter::SetLimits(uint32_t maxLines, uint32_t maxCharsPerLine, bool wrapLongLines) {
  maxLines_ = maxLines;
  maxCharsPerLine_ = maxCharsPerLine;
  wrapLongLines_ = wrapLongLines;
}

bool StkTextWriter::Refill() {
  if (endOfInput_ || input_ == nullptr) {
    return false;
  }
  next_ = 0;
  end_ = input_->Read(buffer_.data(), buffer_.size());
  received_ += end_;
  cutShort_ = end_ == 0 && received_ < input_->Length();
  const size_t endOfText = std::string_view(buffer_.data(), end_).find(kEndOfText);
  if (endOfText != std::string_view::npos) {
    end_ = endOfText;
    input_.reset();
  }
  endOfInput_ = end_ == 0;
  return !endOfInput_;
}

void StkTextWriter::Carry(std::string_view bytes, size_t limit) {
  carried_ += bytes.substr(0, limit - std::min(limit, carried_.size()));
  carriedLength_ += bytes.size();
  carriageReturnLast_ = bytes.back() == '\r';
}

bool StkTextWriter::ReadLine(TextLine& line, size_t limit) {
  if (next_ == end_ && !Refill()) {
    return false;
  }
  carried_.clear();
  carriedLength_ = 0;
  carriageReturnLast_ = false;
  const size_t most = limit - 1;
  do {
    const std::string_view chunk(buffer_.data() + next_, end_ - next_);
    const size_t lineFeed = chunk.find('\n');
    if (lineFeed != std::string_view::npos) {
      next_ += lineFeed + 1;
      if (carriedLength_ == 0) {
        const bool carriageReturn = lineFeed > 0 && chunk[lineFeed - 1] == '\r';
        line.length = lineFeed - (carriageReturn ? 1 : 0);
        line.text = chunk.substr(0, std::min<uint64_t>(line.length, most));
        return true;
      }
      if (lineFeed > 0) {
        Carry(chunk.substr(0, lineFeed), most);
      }
      carriedLength_ -= carriageReturnLast_ ? 1 : 0;
      break;
    }
    next_ = end_;
    Carry(chunk, most);
  } while (Refill());
  line.length = carriedLength_;
  line.text = std::string_view(carried_).substr(0, std::min<uint64_t>(line.length, most));
  return true;
}

bool StkTextWriter::WriteString(std::string_view text) {
  if (output_ == nullptr || writeFailed_) {
    return false;
  }
  const bool limited = maxLines_ != 0 || maxCharsPerLine_ != 0;
  return limited ? WriteLimited(text) : WriteUnlimited(text);
}

bool StkTextWriter::WriteUnlimited(std::string_view text) {
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

size_t StkTextWriter::RoomInLine(size_t wanted) const {
  const size_t left = maxCharsPerLine_ - std::min(maxCharsPerLine_, charsInLine_);
  return maxCharsPerLine_ == 0 ? wanted : std::min(wanted, left);
}

bool StkTextWriter::WriteLimited(std::string_view text) {
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
    const size_t room = RoomInLine(text.size());
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

bool StkTextWriter::EndLine() {
  ++linesWritten_;
  charsInLine_ = 0;
  return Put("\r\n");
}

bool StkTextWriter::FailAtLimit(bool& reached) {
  static_cast<void>(Flush());  // the limit is what the caller reports, whatever the device says
  reached = true;
  writeFailed_ = true;
  return false;
}

bool StkTextWriter::Put(std::string_view bytes) {
  if (buffer_.size() + bytes.size() < kChunkSize) {
    buffer_ += bytes;
    return true;
  }
  if (!Flush()) {
    return false;
  }
  if (bytes.size() < kChunkSize) {
    buffer_ += bytes;
    return true;
  }
  writeFailed_ = !output_->Write(bytes);
  return !writeFailed_;
}

bool StkTextWriter::Flush() {
  if (output_ == nullptr || writeFailed_) {
    return false;
  }
  if (!buffer_.empty()) {
    writeFailed_ = !output_->Write(buffer_);
    buffer_.clear();
  }
  return !writeFailed_;
}

bool StkTextWriter::Synchronize() {
  if (!Flush()) {
    return false;
  }
  writeFailed_ = !output_->Synchronize();
  return !writeFailed_;
}

bool StkTextWriter::Close() {
  input_.reset();
  if (output_ == nullptr) {
    return true;
  }
  const bool flushed = Flush();
  const bool closed = output_->Close();
  output_.reset();
  return flushed && closed;
}

void StkTextWriter::Abort() {
  static_cast<void>(Close());
}

}  // namespace velkor
