#include "platform/profile_file.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>

#include "platform/ini_text.h"
#include "platform/limits.h"

namespace velkor {

ProfileFile::ProfileFile(const CodePage& codePage, InputFile& file)
    : ProfileFile(codePage, ReadIniText(file, kMaxBytes), file.Length() > kMaxBytes) {
  cutShort_ = text_.size() < std::min<uint64_t>(file.Length(), kMaxBytes);
}

ProfileFile::ProfileFile(const CodePage& codePage, std::string text, bool moreBytes)
    : codePage_(codePage), text_(std::move(text)) {
  moreBytes = moreBytes || text_.size() > kMaxBytes;
  text_.resize(std::min(text_.size(), kMaxBytes));
  Parse(moreBytes);
  Sort();
}

void ProfileFile::Parse(bool moreBytes) {
  IniLines lines(text_, codePage_);
  IniLines::Line line;
  while (lines.Next(line)) {
    if (IsFull()) {
      firstLeftOut_ = line.number;
      return;
    }
    if (line.isSection) {
      sections_.push_back({line.name, entries_.size(), entries_.size()});
    } else {
      entries_.push_back({line.name, line.value, line.number, false});
      sections_.back().end = entries_.size();
    }
  }
  firstLeftOut_ = moreBytes ? line.number : 0;
}

// Of sections and of keys the first of equal ones counts.
void ProfileFile::Sort() {
  std::stable_sort(sections_.begin(), sections_.end(), [this](const Section& a, const Section& b) {
    return codePage_.CompareIgnoreCase(a.name, b.name) < 0;
  });
  for (size_t i = 0; i < sections_.size(); ++i) {
    if (i > 0 && codePage_.EqualIgnoreCase(sections_[i - 1].name, sections_[i].name)) {
      continue;
    }
    const std::span<Entry> entries(entries_.data() + sections_[i].first,
                                   entries_.data() + sections_[i].end);
    std::ranges::stable_sort(entries, [this](const Entry& a, const Entry& b) {
      return codePage_.CompareIgnoreCase(a.key, b.key) < 0;
    });
    for (size_t entry = 0; entry < entries.size(); ++entry) {
      entries[entry].counts =
          entry == 0 || !codePage_.EqualIgnoreCase(entries[entry - 1].key, entries[entry].key);
    }
  }
}

std::vector<ProfileFile::Entry> ProfileFile::EntriesOf(std::string_view section) const {
  std::vector<Entry> found;
  for (const Section& each : sections_) {
    if (codePage_.EqualIgnoreCase(each.name, section)) {
      found.insert(found.end(), entries_.begin() + static_cast<std::ptrdiff_t>(each.first),
                   entries_.begin() + static_cast<std::ptrdiff_t>(each.end));
    }
  }
  std::ranges::sort(found, {}, &Entry::line);
  return found;
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
