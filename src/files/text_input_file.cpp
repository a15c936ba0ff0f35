#include "files/text_input_file.h"

#include <algorithm>
#include <utility>

namespace velkor {

namespace {

constexpr size_t kReadBufferSize = 65536;
constexpr char kEndOfText = '\x1A';
constexpr size_t kRestOfCharacter = 3;  // bytes that may follow its first one

}  // namespace

TextInputFile::TextInputFile(std::unique_ptr<InputFile> file, const CodePage& codePage)
    : codePage_(codePage), file_(std::move(file)) {
  buffer_.resize(kReadBufferSize);
}

bool TextInputFile::Refill() {
  if (endOfInput_ || file_ == nullptr) {
    return false;
  }
  next_ = 0;
  end_ = file_->Read(buffer_.data(), buffer_.size());
  received_ += end_;
  cutShort_ = end_ == 0 && received_ < file_->Length();
  const size_t endOfText = std::string_view(buffer_.data(), end_).find(kEndOfText);
  if (endOfText != std::string_view::npos) {
    end_ = endOfText;
    file_.reset();
  }
  endOfInput_ = end_ == 0;
  return !endOfInput_;
}

void TextInputFile::Carry(std::string_view bytes, size_t limit) {
  carried_ += bytes.substr(0, limit - std::min(limit, carried_.size()));
  carriedLength_ += bytes.size();
  carriageReturnLast_ = bytes.back() == '\r';
}

std::string_view TextInputFile::Kept(std::string_view bytes, uint64_t length, size_t most) const {
  return length <= most ? bytes.substr(0, length)
                        : bytes.substr(0, codePage_.CutLength(bytes, most));
}

bool TextInputFile::MustStop() {
  stopped_ = stopEvent_ != nullptr && stopEvent_->Test();
  return stopped_;
}

bool TextInputFile::ReadLine(TextLine& line, size_t limit) {
  if (next_ == end_ && !Refill()) {
    return false;
  }
  carried_.clear();
  carriedLength_ = 0;
  carriageReturnLast_ = false;
  lastLineEnded_ = false;
  const size_t most = limit - 1;
  do {
    const std::string_view chunk(buffer_.data() + next_, end_ - next_);
    const size_t lineFeed = chunk.find('\n');
    if (lineFeed != std::string_view::npos) {
      lastLineEnded_ = true;
      next_ += lineFeed + 1;
      if (carriedLength_ == 0) {
        const bool carriageReturn = lineFeed > 0 && chunk[lineFeed - 1] == '\r';
        line.length = lineFeed - (carriageReturn ? 1 : 0);
        line.text = Kept(chunk.substr(0, lineFeed), line.length, most);
        return true;
      }
      if (lineFeed > 0) {
        Carry(chunk.substr(0, lineFeed), most + kRestOfCharacter);
      }
      carriedLength_ -= carriageReturnLast_ ? 1 : 0;
      break;
    }
    next_ = end_;
    Carry(chunk, most + kRestOfCharacter);
  } while (!MustStop() && Refill());
  line.length = carriedLength_;
  line.text = Kept(carried_, line.length, most);
  return true;
}

}  // namespace velkor
