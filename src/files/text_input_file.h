#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "files/text_line.h"
#include "platform/code_page.h"
#include "platform/event.h"
#include "platform/file_system.h"
#include "platform/limits.h"

namespace velkor {

// Reads the lines of a text-mode file: CR LF reads as LF, a CR alone is an ordinary character,
// 0x1A ends the text. Closes the file with its own end. Used by one thread.
class TextInputFile {
 public:
  // codePage outlives it.
  TextInputFile(std::unique_ptr<InputFile> file, const CodePage& codePage);

  // From now on this event, set, ends the reading of a line that is longer than the memory at hand.
  void StopOn(Event& stopEvent) { stopEvent_ = &stopEvent; }

  // Lines end at a line feed or the end of the file; at most limit - 1 bytes are kept, limit being
  // at most kTextBufferSize, and no part of a character. False at the end of the file before a
  // first character. The full length counts the bytes of the line as text mode delivers them.
  bool ReadLine(TextLine& line, size_t limit);
  // A line feed ended the line answered last: not the end of the file or the end-of-text mark.
  bool LastLineEnded() const { return lastLineEnded_; }
  // The stop event has ended the line answered last.
  bool Stopped() const { return stopped_; }
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
  // Of what is known of a line's bytes.
  std::string_view Kept(std::string_view bytes, uint64_t length, size_t most) const;
  bool MustStop();

  const CodePage& codePage_;
  Event* stopEvent_ = nullptr;
  std::unique_ptr<InputFile> file_;  // none after the end-of-text mark
  std::string buffer_;
  size_t next_ = 0;  // of buffer_
  size_t end_ = 0;
  uint64_t received_ = 0;
  bool endOfInput_ = false;
  bool cutShort_ = false;
  bool lastLineEnded_ = true;
  bool stopped_ = false;
  std::string carried_;         // what is kept of a line that began in earlier chunks
  uint64_t carriedLength_ = 0;  // its length so far, carriage returns included
  bool carriageReturnLast_ = false;
};

}  // namespace velkor
