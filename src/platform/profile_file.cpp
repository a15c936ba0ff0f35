#include "platform/profile_file.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "platform/ini_text.h"
#include "platform/limits.h"

namespace velkor {

ProfileFile::ProfileFile(const CodePage& codePage, InputFile& file)
    : ProfileFile(codePage, ReadIniText(file, kMaxBytes)) {
  cutShort_ = text_.size() < std::min<uint64_t>(file.Length(), kMaxBytes);
}

ProfileFile::ProfileFile(const CodePage& codePage, std::string text)
    : codePage_(codePage), text_(std::move(text)) {
  text_.resize(std::min(text_.size(), kMaxBytes));
  Parse();
  Sort();
}

void ProfileFile::Parse() {
  IniLines lines(text_, codePage_);
  IniLines::Line line;
  while (!IsFull() && lines.Next(line)) {
    if (line.isSection) {
      sections_.push_back({line.name, entries_.size(), entries_.size()});
    } else {
      entries_.push_back({line.name, line.value});
      sections_.back().end = entries_.size();
    }
  }
}

void ProfileFile::Sort() {
  const auto at = [this](size_t index) {
    return entries_.begin() + static_cast<std::ptrdiff_t>(index);
  };
  std::stable_sort(sections_.begin(), sections_.end(), [this](const Section& a, const Section& b) {
    return codePage_.CompareIgnoreCase(a.name, b.name) < 0;
  });
  sections_.erase(std::unique(sections_.begin(), sections_.end(),
                              [this](const Section& a, const Section& b) {
                                return codePage_.EqualIgnoreCase(a.name, b.name);
                              }),
                  sections_.end());
  for (const Section& section : sections_) {
    std::stable_sort(at(section.first), at(section.end), [this](const Entry& a, const Entry& b) {
      return codePage_.CompareIgnoreCase(a.key, b.key) < 0;
    });
  }
}

std::string ProfileFile::GetString(std::string_view section, std::string_view key) const {
  const auto foundSection = std::lower_bound(sections_.begin(), sections_.end(), section,
                                             [this](const Section& a, std::string_view name) {
                                               return codePage_.CompareIgnoreCase(a.name, name) < 0;
                                             });
  if (foundSection == sections_.end() || !codePage_.EqualIgnoreCase(foundSection->name, section)) {
    return "";
  }
  const auto end = entries_.begin() + static_cast<std::ptrdiff_t>(foundSection->end);
  const auto foundEntry =
      std::lower_bound(entries_.begin() + static_cast<std::ptrdiff_t>(foundSection->first), end,
                       key, [this](const Entry& a, std::string_view name) {
                         return codePage_.CompareIgnoreCase(a.key, name) < 0;
                       });
  if (foundEntry == end || !codePage_.EqualIgnoreCase(foundEntry->key, key)) {
    return "";
  }
  const std::string_view value = foundEntry->value;
  return std::string(value.substr(0, codePage_.CutLength(value, kMaxTextLength)));
}

}  // namespace velkor
