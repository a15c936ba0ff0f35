#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/code_page.h"
#include "platform/file_system.h"

namespace velkor {

// The lines of an INI text that say something, in their order: sections in brackets, then
// key=value. Blanks around a name, key and value are trimmed, one pair of quotes around a value is
// removed, ";" begins a comment line, a section's name reaches to the last "]" of its line, and
// what stands before the first section says nothing. A line ends at LF, CR LF or CR alone; no other
// byte ends anything. Points into the text. Used by one thread.
class IniLines {
 public:
  struct Line {
    bool isSection = false;
    std::string_view name;  // of the section, or the key
    std::string_view value;
    uint32_t number = 0;  // of the line, from 1
  };

  IniLines(std::string_view text, const CodePage& codePage);
  // False at the end.
  bool Next(Line& line);

 private:
  // False for a line that says nothing.
  bool Parse(std::string_view text, Line& line);

  std::string_view rest_;
  uint32_t number_ = 0;
  const CodePage& codePage_;
  bool inSection_ = false;
};

// The beginning of a file, at most so many bytes.
std::string ReadIniText(InputFile& file, size_t most);

}  // namespace velkor
