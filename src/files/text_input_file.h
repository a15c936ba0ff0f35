#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "files/text_line.h"
#include "platform/file_system.h"
#include "platform/limits.h"

namespace velkor {

// Reads the lines of a text-mode file: CR LF reads as LF, a CR alone is an ordinary character,
// 0x1A ends the text. Closes the file with its own end. Used by one thread.
class TextInputFile {
 public:
  explicit TextInputFile(std::unique_ptr<InputFile> file);

  // Lines end at a line feed or the end of the file; at most limit - 1 characters are kept, limit
  // being at most kTextBufferSize. False at the end of the file before a first character. The full
  // length counts the characters of the line as text mode delivers them.
  bool ReadLine(TextLine& line, size_t limit);
  // The file ended before its length: the line answered last may be a part of one.
  bool CutShort() const { return cutShort_; }
  // What is in memory of the lines that follow, as the file has them: a line feed ends each,
  // perhaps after a CR. The last one may be incomplete. Valid until the next ReadLine.
  std::string_view BytesAtHand() const { return {buffer_.data() + next_, end_ - next_}; }
  // Passes whole lines at the start of BytesAtHand.
  void SkipBytes(size_t count) { next_ += count; }

 private:
  // False at the end of the text.
  bool Refill();
  // The bytes at hand belong to the line and are followed by more.
  void Carry(std::string_view bytes, size_t limit);

  std::unique_ptr<InputFile> file_;  // none after the end-of-text mark
  std::string buffer_;
  size_t next_ = 0;  // of buffer_
  size_t end_ = 0;
  uint64_t received_ = 0;
  bool endOfInput_ = false;
  bool cutShort_ = false;
  std::string carried_;         // what is kept of a line that began in earlier chunks
  uint64_t carriedLength_ = 0;  // its length so far, carriage returns included
  bool carriageReturnLast_ = false;
};

}  // namespace velkor
