#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "files/text_line.h"
#include "messages/message_key.h"
#include "platform/host.h"

namespace velkor {

// A text-mode file, opened for one of two uses:
// - writing lines, with limits: a line feed is written as CR LF;
// - reading lines: CR LF reads as LF, a CR alone is an ordinary character, 0x1A ends the text.
// Used by one job: constructed, opened, given its limits, used, closed. Reports nothing itself.
class StkTextWriter {
 public:
  explicit StkTextWriter(Host& host) : host_(host) {}
  ~StkTextWriter();

  struct Opened {
    bool ok = false;
    MessageKey failure{};  // when not ok
  };

  // W9431 when the file does not exist, W9401 for every other cause.
  Opened OpenForRead(std::string_view path);
  // Creates the file, or empties it when it exists, for exclusive use. W9402 on failure.
  Opened OpenForWrite(std::string_view path);
  const std::string& Path() const { return path_; }

  // 0: no limit. Set after opening.
  void SetLimits(uint32_t maxLines, uint32_t maxCharsPerLine, bool wrapLongLines);
  uint32_t LinesWritten() const { return linesWritten_; }
  bool LineLimitReached() const { return lineLimitReached_; }
  bool CharLimitReached() const { return charLimitReached_; }

  // Lines end at a line feed or the end of the file; at most limit - 1 characters are kept, limit
  // being at most 5120. False at the end of the file before a first character. The full length
  // counts the characters of the line as text mode delivers them.
  bool ReadLine(TextLine& line, size_t limit);
  // The file ended before its length: the line answered last may be a part of one.
  bool CutShort() const { return cutShort_; }
  // What is in memory of the lines that follow, as the file has them: a line feed ends each,
  // perhaps after a CR. The last one may be incomplete. Valid until the next ReadLine.
  std::string_view BytesAtHand() const { return {buffer_.data() + next_, end_ - next_}; }
  // Passes whole lines at the start of BytesAtHand.
  void SkipBytes(size_t count) { next_ += count; }

  // False at a limit (LineLimitReached or CharLimitReached tells which) or when the device does
  // not take the bytes. What was written before stays. After a failure: Abort.
  [[nodiscard]] bool WriteString(std::string_view text);
  // Hands everything that is buffered to the file; false when that fails.
  [[nodiscard]] bool Flush();
  // The same, and waits until the device has it.
  [[nodiscard]] bool Synchronize();
  // False when something written could not be brought to the file.
  [[nodiscard]] bool Close();
  // Closes and reports nothing; what was written before a failure stays in the file.
  void Abort();

 private:
  // Reading. False at the end of the text.
  bool Refill();
  // The bytes at hand belong to the line and are followed by more.
  void Carry(std::string_view bytes, size_t limit);

  // Writing. Text without a line feed, as it stands.
  [[nodiscard]] bool Put(std::string_view bytes);
  [[nodiscard]] bool WriteUnlimited(std::string_view text);
  [[nodiscard]] bool WriteLimited(std::string_view text);
  size_t RoomInLine(size_t wanted) const;
  [[nodiscard]] bool EndLine();
  [[nodiscard]] bool FailAtLimit(bool& reached);

  Host& host_;
  std::string path_;
  std::unique_ptr<InputFile> input_;
  std::unique_ptr<OutputFile> output_;

  std::string buffer_;
  size_t next_ = 0;  // reading: next byte of buffer_
  size_t end_ = 0;
  uint64_t received_ = 0;
  bool endOfInput_ = false;
  bool cutShort_ = false;
  std::string carried_;         // reading: what is kept of a line that began in earlier chunks
  uint64_t carriedLength_ = 0;  // its length so far, carriage returns included
  bool carriageReturnLast_ = false;

  bool writeFailed_ = false;
  uint32_t maxLines_ = 0;
  uint32_t maxCharsPerLine_ = 0;
  bool wrapLongLines_ = false;
  uint32_t linesWritten_ = 0;
  uint32_t charsInLine_ = 0;
  bool lineLimitReached_ = false;
  bool charLimitReached_ = false;
};

}  // namespace velkor
