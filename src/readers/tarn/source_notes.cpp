#include "readers/tarn/source_notes.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <set>
#include <string>

#include "files/numbers.h"
#include "files/paths.h"
#include "platform/limits.h"

namespace velkor {

namespace {

constexpr std::string_view kSection = "SrcFile";
constexpr std::string_view kKey = "Source";
constexpr size_t kMostNamed = 100;
constexpr size_t kShownOfLongValue = 60;

std::optional<uint32_t> NumberOf(std::string_view key, const CodePage& codePage) {
  if (key.size() <= kKey.size()) {
    return std::nullopt;
  }
  const std::string_view digits = key.substr(kKey.size());
  uint32_t number = 0;
  const bool asWritten = codePage.EqualIgnoreCase(key.substr(0, kKey.size()), kKey) &&
                         ParseWholeNumber(digits, 10, number) == NumberResult::kOk &&
                         std::to_string(number) == digits;
  return asWritten && number != 0 ? std::optional(number) : std::nullopt;
}

class NoteWriter {
 public:
  NoteWriter(const StkProjectFile& projectFile, uint32_t firstUnread, const StkMessages& messages)
      : projectFile_(projectFile),
        codePage_(messages.GetCodePage()),
        firstUnread_(firstUnread),
        messages_(messages) {}

  std::vector<StkNote> Write() {
    const std::vector<ProfileFile::Entry> entries = projectFile_.profile.EntriesOf(kSection);
    for (const ProfileFile::Entry& entry : entries) {
      if (IsRead(entry)) {
        read_.insert(entry.value);
      }
    }
    for (const ProfileFile::Entry& entry : entries) {
      if (NumberOf(entry.key, codePage_) && !entry.value.empty()) {
        NoteSource(entry);
      }
    }
    if (more_ != 0) {
      Add(MessageKey::kNoteMoreSources, {more_}, 0, moreIncomplete_);
    }
    if (const uint32_t line = projectFile_.profile.FirstLeftOut()) {
      constexpr uint32_t kMegabytes = ProfileFile::kMaxBytes >> 20;
      Add(MessageKey::kNoteProjectTooLarge, {kMegabytes, uint32_t{ProfileFile::kMaxLines}}, line,
          true);
    }
    return std::move(notes_);
  }

 private:
  bool IsRead(const ProfileFile::Entry& entry) const {
    const std::optional<uint32_t> number = NumberOf(entry.key, codePage_);
    return entry.counts && number && *number < firstUnread_ && entry.value.size() <= kMaxTextLength;
  }

  void NoteSource(const ProfileFile::Entry& entry) {
    const std::string_view extension = Extension(entry.value, codePage_);
    const auto is = [&](std::string_view other) {
      return codePage_.EqualIgnoreCase(extension, other);
    };
    if (is(".h") || is(".inc") || !named_.insert(entry.value).second) {
      return;
    }
    if (!is(".c")) {
      AddSource(MessageKey::kNoteNotASource, entry, {entry.key, entry.value}, false);
    } else if (!read_.contains(entry.value)) {
      NoteLeftOut(entry);
    }
  }

  void NoteLeftOut(const ProfileFile::Entry& entry) {
    const bool isLimit = firstUnread_ > uint32_t{StkProjectFile::kMaxSources};
    if (entry.value.size() > kMaxTextLength) {
      const size_t shown = codePage_.CutLength(entry.value, kShownOfLongValue);
      AddSource(MessageKey::kNoteSourceTooLong, entry,
                {entry.key, entry.value.substr(0, shown), kMaxTextLength}, true);
    } else if (!entry.counts) {
      AddSource(MessageKey::kNoteSourceRepeated, entry, {entry.key, entry.value}, true);
    } else {
      AddSource(isLimit ? MessageKey::kNoteSourceLimit : MessageKey::kNoteSourceGap, entry,
                {entry.key, entry.value, isLimit ? firstUnread_ - 1 : firstUnread_}, true);
    }
  }

  void AddSource(MessageKey key, const ProfileFile::Entry& entry, MessageArguments arguments,
                 bool incomplete) {
    if (notes_.size() < kMostNamed) {
      Add(key, arguments, entry.line, incomplete);
    } else {
      ++more_;
      moreIncomplete_ = moreIncomplete_ || incomplete;
    }
  }

  void Add(MessageKey key, MessageArguments arguments, uint32_t line, bool incomplete) {
    notes_.push_back({.rule = "source-left-out",
                      .text = messages_.FormatMessageText(key, arguments),
                      .file = projectFile_.path,
                      .line = line,
                      .function = std::nullopt,
                      .incomplete = incomplete});
  }

  const StkProjectFile& projectFile_;
  const CodePage& codePage_;
  const uint32_t firstUnread_;
  const StkMessages& messages_;
  std::set<std::string_view> read_;  // values
  std::set<std::string_view> named_;
  std::vector<StkNote> notes_;
  uint32_t more_ = 0;
  bool moreIncomplete_ = false;
};

}  // namespace

std::vector<StkNote> SourceNotes(const StkProjectFile& projectFile, uint32_t firstUnread,
                                 const StkMessages& messages) {
  return NoteWriter(projectFile, firstUnread, messages).Write();
}

}  // namespace velkor
