#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/code_page.h"
#include "platform/file_system.h"
#include "platform/limits.h"

namespace velkor {

// An INI file (see IniLines) read once. Names are compared ignoring letter case, and the first of
// two equal sections or keys wins: a later section of the same name is not looked at, even for keys
// that the first lacks. Memory is bounded: at most kMaxBytes and kMaxLines of the file (those with
// a section or a key) are looked at. Not copied, not moved; any thread may ask.
class ProfileFile {
 public:
  static constexpr size_t kMaxBytes = size_t{64} << 20;
  static constexpr size_t kMaxLines = size_t{1} << 20;

  ProfileFile(const CodePage& codePage, InputFile& file);
  ProfileFile(const CodePage& codePage, std::string text, bool moreBytes = false);
  ProfileFile(const ProfileFile&) = delete;
  ProfileFile& operator=(const ProfileFile&) = delete;

  // The file ended before it should: what is missing may be anything.
  bool CutShort() const { return cutShort_; }
  // The first line that was not looked at, the file being too large; 0: there is none.
  uint32_t FirstLeftOut() const { return firstLeftOut_; }

  struct Entry {
    std::string_view key;
    std::string_view value;  // whole
    uint32_t line;           // from 1
    bool counts;             // neither its section nor its key stands in the file before
  };
  // Of all sections of that name, in the order of the file. Valid as long as this object.
  std::vector<Entry> EntriesOf(std::string_view section) const;
  // The value, at most kMaxTextLength bytes and never cut inside a character; empty when the
  // section or the key is missing.
  std::string GetString(std::string_view section, std::string_view key) const;

 private:
  struct Section {
    std::string_view name;
    size_t first;  // its entries: from here
    size_t end;    // to before here
  };

  // moreBytes: the text is only the beginning of the file's.
  void Parse(bool moreBytes);
  void Sort();
  bool IsFull() const { return sections_.size() + entries_.size() >= kMaxLines; }

  const CodePage& codePage_;
  bool cutShort_ = false;
  uint32_t firstLeftOut_ = 0;
  std::string text_;  // everything below points into it
  // Sorted by name, ignoring letter case, equal ones as in the file.
  std::vector<Section> sections_;
  // Sorted by key within the first section of a name, equal ones as in the file.
  std::vector<Entry> entries_;
};

}  // namespace velkor
