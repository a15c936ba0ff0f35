#include "platform/profile_file.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "platform/ini_text.h"

namespace velkor {
namespace {

std::string ReadAll(InputFile& file) {
  constexpr size_t kChunk = size_t{64} << 10;
  std::string text;
  std::string chunk(kChunk, '\0');
  while (text.size() < ProfileFile::kMaxBytes) {
    const size_t wanted = std::min(kChunk, ProfileFile::kMaxBytes - text.size());
    const size_t count = file.Read(chunk.data(), wanted);
    if (count == 0) {
      break;
    }
    text.append(chunk, 0, count);
  }
  return text;
}

}  // namespace

ProfileFile::ProfileFile(const CodePage& codePage, InputFile& file)
    : ProfileFile(codePage, ReadAll(file)) {
  cutShort_ = text_.size() < std::min<uint64_t>(file.Length(), kMaxBytes);
}

ProfileFile::ProfileFile(const CodePage& codePage, std::string text)
    : codePage_(codePage), text_(std::move(text)) {
  text_.resize(std::min(text_.size(), kMaxBytes));
  Parse();
  Sort();
}

void ProfileFile::Parse() {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  std::string_view rest = text_;
  if (rest.starts_with(kByteOrderMark)) {
    rest.remove_prefix(kByteOrderMark.size());
  }
  while (!rest.empty() && !IsFull()) {
    // The LF of a CR LF ends an empty line, which says nothing.
    const size_t length = std::min(rest.find_first_of("\r\n"), rest.size());
    ParseLine(TrimIniText(rest.substr(0, length)));
    rest.remove_prefix(std::min(length + 1, rest.size()));
  }
}

void ProfileFile::ParseLine(std::string_view line) {
  if (line.empty() || line.front() == ';') {
    return;
  }
  if (line.front() == '[') {
    const size_t end = FindLastIniBracket(line, codePage_);
    if (end != std::string_view::npos) {
      sections_.push_back({TrimIniText(line.substr(1, end - 1)), entries_.size(), entries_.size()});
    }
    return;
  }
  const size_t equals = line.find('=');
  if (equals == std::string_view::npos || sections_.empty()) {
    return;
  }
  entries_.push_back(
      {TrimIniText(line.substr(0, equals)), UnquoteIniValue(TrimIniText(line.substr(equals + 1)))});
  sections_.back().end = entries_.size();
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

std::string ProfileFile::GetString(std::string_view section, std::string_view key,
                                   size_t size) const {
  const auto foundSection = std::lower_bound(sections_.begin(), sections_.end(), section,
                                             [this](const Section& a, std::string_view name) {
                                               return codePage_.CompareIgnoreCase(a.name, name) < 0;
                                             });
  if (size == 0 || foundSection == sections_.end() ||
      !codePage_.EqualIgnoreCase(foundSection->name, section)) {
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
  return std::string(value.substr(0, codePage_.CutLength(value, size - 1)));
}

}  // namespace velkor
