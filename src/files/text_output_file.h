#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/code_page.h"
#include "platform/file_system.h"

namespace velkor {

// Writes lines to a file in text mode (a line feed is written as CR LF), within limits. Used by
// one job: given its limits, written, closed. Reports nothing itself; what was written before a
// failure stays in the file.
class TextOutputFile {
 public:
  explicit TextOutputFile(std::unique_ptr<OutputFile> file);
  // Writes what is buffered, and reports nothing.
  ~TextOutputFile();
  TextOutputFile(const TextOutputFile&) = delete;
  TextOutputFile& operator=(const TextOutputFile&) = delete;

  // 0: no limit.
  void SetLimits(uint32_t maxLines, uint32_t maxCharsPerLine, bool wrapLongLines);
  // Each text that is written is whole characters of the code page: a limit cuts none of them.
  void KeepCharacters(const CodePage& codePage) { codePage_ = &codePage; }
  uint32_t LinesWritten() const { return linesWritten_; }
  bool LineLimitReached() const { return lineLimitReached_; }
  bool CharLimitReached() const { return charLimitReached_; }

  // False at a limit (LineLimitReached or CharLimitReached tells which), when the device does not
  // take the bytes, and after a failure.
  [[nodiscard]] bool WriteString(std::string_view text);
  // Hands everything that is buffered to the device and waits until it has it.
  [[nodiscard]] bool Synchronize();
  // False when something written could not be brought to the file. Nothing may be written
  // afterwards.
  [[nodiscard]] bool Close();

 private:
  // Text without a line feed, as it stands.
  [[nodiscard]] bool Put(std::string_view bytes);
  [[nodiscard]] bool WriteUnlimited(std::string_view text);
  [[nodiscard]] bool WriteLimited(std::string_view text);
  // How much of the text the line has room for.
  size_t RoomInLine(std::string_view text) const;
  [[nodiscard]] bool EndLine();
  [[nodiscard]] bool FailAtLimit(bool& reached);
  // Hands everything that is buffered to the file.
  [[nodiscard]] bool Flush();

  std::unique_ptr<OutputFile> file_;  // none when closed
  std::string buffer_;
  bool writeFailed_ = false;
  uint32_t maxLines_ = 0;
  uint32_t maxCharsPerLine_ = 0;
  bool wrapLongLines_ = false;
  const CodePage* codePage_ = nullptr;
  uint32_t linesWritten_ = 0;
  uint32_t charsInLine_ = 0;
  bool lineLimitReached_ = false;
  bool charLimitReached_ = false;
};

}  // namespace velkor
