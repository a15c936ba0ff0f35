#include "document/system_file_keeper.h"

#include <algorithm>
#include <array>

#include "files/fingerprint.h"
#include "files/paths.h"

namespace velkor {

namespace {

constexpr int kMaxCopies = 99;
constexpr uint64_t kMaxTextSize = uint64_t{16} << 20;

// None when the file cannot be read whole.
std::optional<ChangedSystemFile> Content(InputFile& file) {
  const uint64_t length = file.Length();
  StkFingerprint fingerprint;
  std::string text;
  uint64_t read = 0;
  std::array<char, 10240> buffer;
  while (const size_t count = file.Read(buffer.data(), buffer.size())) {
    fingerprint.Add({buffer.data(), count});
    read += count;
    if (length <= kMaxTextSize) {
      text.append(buffer.data(), count);
    }
  }
  if (read != length) {
    return std::nullopt;
  }
  const bool isKept = length <= kMaxTextSize;
  return ChangedSystemFile{fingerprint.Value(),
                           isKept ? std::optional(std::move(text)) : std::nullopt};
}

// In any letter case, as a host may tell names apart.
bool MayBeCopy(std::string_view name) {
  constexpr std::string_view kEnding = ".bak";
  const auto isSame = [](char left, char right) {
    return left == right || (left >= 'A' && left <= 'Z' && left - 'A' + 'a' == right);
  };
  return std::search(name.begin(), name.end(), kEnding.begin(), kEnding.end(), isSame) !=
         name.end();
}

}  // namespace

StkSystemFileKeeper::State StkSystemFileKeeper::Keep() {
  const OpenResult<InputFile> opened = host_.files.OpenWhenFree(path_, giveUp_);
  if (opened.failure == FileFailure::kNotFound) {
    return State::kMayBeReplaced;
  }
  std::optional<ChangedSystemFile> content = opened.file ? Content(*opened.file) : std::nullopt;
  if (!content) {
    return State::kNotKept;
  }
  if (content->fingerprint == seen_.known) {
    return State::kMayBeReplaced;
  }
  if (content->fingerprint != seen_.incomplete) {
    changed_ = *std::move(content);
    return State::kChanged;
  }
  if (!Copy(content->fingerprint)) {
    return State::kNotKept;
  }
  copied_ = content->fingerprint;
  return State::kMayBeReplaced;
}

bool StkSystemFileKeeper::IsKept(InputFile& file) {
  const std::optional<uint64_t> content = FileFingerprint(file);
  const bool kept = content && (content == seen_.known || content == copied_);
  overtaken_ = content && !kept;
  return kept;
}

std::vector<std::string> StkSystemFileKeeper::CopyPaths(const std::string& path) {
  std::vector<std::string> paths;
  for (int number = 1; number <= kMaxCopies; ++number) {
    paths.push_back(path + ".bak" + (number == 1 ? "" : std::to_string(number)));
  }
  return paths;
}

// One look at the folder instead of one for each of them.
std::vector<std::string> StkSystemFileKeeper::PossibleCopies(const std::string& path,
                                                             const Host& host) {
  const FolderListing folder = host.files.ListFolder(DirectoryPart(path, host.codePage));
  const bool mayBeThere =
      !folder.isWhole || std::ranges::any_of(folder.entries, [&](const FolderEntry& entry) {
        return MayBeCopy(entry.name);
      });
  return mayBeThere ? CopyPaths(path) : std::vector<std::string>();
}

bool StkSystemFileKeeper::Copy(uint64_t fingerprint) {
  for (const std::string& copyPath : CopyPaths(path_)) {
    if (!host_.files.Exists(copyPath)) {
      if (!CopyTo(copyPath, fingerprint)) {
        return false;
      }
      reporter_.PostLog(MessageKey::kWritingCompleted, {copyPath});
      return true;
    }
    if (FileFingerprint(host_.files, copyPath) == fingerprint) {
      return true;
    }
  }
  return false;
}

// Complete or not at all, and never in the place of what another program has put there meanwhile.
bool StkSystemFileKeeper::CopyTo(const std::string& copyPath, uint64_t fingerprint) {
  StkOutputTarget copy(copyPath, host_);
  return copy.Open(StkOutputTarget::Way::kBeside) && copy.TakePermissions(path_) &&
         WriteCopy(copy, fingerprint) &&
         copy.Finish([](InputFile* old) { return !old; }) == StkOutputTarget::End::kInPlace;
}

bool StkSystemFileKeeper::WriteCopy(StkOutputTarget& copy, uint64_t fingerprint) {
  const OpenResult<InputFile> from = host_.files.OpenWhenFree(path_, giveUp_);
  if (!from.file) {
    return false;
  }
  const std::unique_ptr<OutputFile> to = copy.Output();
  bool written = true;
  std::array<char, 10240> buffer;
  while (const size_t count = written ? from.file->Read(buffer.data(), buffer.size()) : 0) {
    written = to->Write({buffer.data(), count});
  }
  return written && copy.Fingerprint() == fingerprint;
}

}  // namespace velkor
