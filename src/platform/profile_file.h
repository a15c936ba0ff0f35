#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/code_page.h"
#include "platform/file_system.h"

namespace velkor {

// An INI file read once: sections in brackets, then lines key=value. Names are compared ignoring
// letter case; blanks around key and value are trimmed, one pair of quotes around a value is
// removed, a line that begins with ";" is a comment, and the first of two equal sections or keys
// wins. Memory is bounded: at most kMaxBytes of the file are looked at, and a value keeps at most
// the bytes that its reader asks for.
class ProfileFile {
 public:
  static constexpr size_t kMaxBytes = size_t{64} << 20;

  ProfileFile(const CodePage& codePage, InputFile& file);
  ProfileFile(const CodePage& codePage, std::string text);

  // The value, at most size - 1 bytes and never cut inside a character; empty when the section or
  // the key is missing.
  std::string GetString(std::string_view section, std::string_view key, size_t size = 5120) const;

 private:
  struct Entry {
    std::string_view section;
    std::string_view key;
    std::string_view value;
  };

  void Parse();

  const CodePage& codePage_;
  std::string text_;            // entries_ point into it
  std::vector<Entry> entries_;  // sorted by section and key, ignoring letter case; first ones only
};

}  // namespace velkor
