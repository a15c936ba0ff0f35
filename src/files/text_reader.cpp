#include "files/text_reader.h"

#include <algorithm>
#include <cstring>

namespace velkor {

bool StkTextReader::Refill() {
  if (!endOfData_) {
    next_ = 0;
    end_ = source_.Read(buffer_.data(), buffer_.size());
    endOfData_ = end_ == 0;
  }
  return !endOfData_;
}

void StkTextReader::SkipLineFeed() {
  if ((next_ < end_ || Refill()) && buffer_[next_] == '\n') {
    ++next_;
    ++position_;
  }
}

bool StkTextReader::MustStop() {
  stopped_ = stopEvent_ != nullptr && stopEvent_->Test();
  return stopped_;
}

bool StkTextReader::ReadLine(TextLine& line, size_t size) {
  if (next_ == end_ && !Refill()) {
    return false;
  }
  const size_t limit = std::min(size, line_.size()) - 1;
  size_t kept = 0;
  uint64_t length = 0;
  do {
    const char* begin = buffer_.data() + next_;
    const char* end = buffer_.data() + end_;
    const char* stop = std::find_if(begin, end, [](char c) { return c == '\n' || c == '\r'; });
    const auto count = static_cast<size_t>(stop - begin);
    const size_t copied = std::min(count, limit - kept);
    std::memcpy(line_.data() + kept, begin, copied);
    kept += copied;
    length += count;
    next_ += count;
    position_ += count;
    if (stop != end) {
      const bool carriageReturn = *stop == '\r';
      ++next_;
      ++position_;
      if (carriageReturn) {
        SkipLineFeed();
      }
      break;
    }
  } while (!MustStop() && Refill());
  line.text = std::string_view(line_.data(), kept);
  line.length = length;
  return true;
}

}  // namespace velkor
