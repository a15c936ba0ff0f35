#include "document/system_file_keeper.h"

#include <array>

#include "document/fingerprint.h"
#include "files/sibling_path.h"

namespace velkor {

namespace {

constexpr int kMaxCopies = 99;

}  // namespace

bool StkSystemFileKeeper::Keep() {
  if (host_.files.OpenForRead(path_).failure == FileFailure::kNotFound) {
    return true;
  }
  const std::optional<uint64_t> content = FileFingerprint(host_.files, path_);
  if (!content) {
    return false;
  }
  if (content == known_) {
    return true;
  }
  if (!Copy(*content)) {
    return false;
  }
  copied_ = content;
  return true;
}

bool StkSystemFileKeeper::IsKept(InputFile& file) const {
  const std::optional<uint64_t> content = FileFingerprint(file);
  return content && (content == known_ || content == copied_);
}

bool StkSystemFileKeeper::Copy(uint64_t fingerprint) {
  for (int number = 1; number <= kMaxCopies; ++number) {
    const std::string copyPath = path_ + ".bak" + (number == 1 ? "" : std::to_string(number));
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
  const std::string sibling = SiblingPath(copyPath, host_.codePage);
  const bool kept = WriteCopy(sibling, fingerprint) &&
                    host_.files.Replace(sibling, copyPath, [](InputFile* old) { return !old; });
  if (!kept) {
    host_.files.Remove(sibling);
  }
  return kept;
}

bool StkSystemFileKeeper::WriteCopy(const std::string& copyPath, uint64_t fingerprint) {
  const OpenResult<InputFile> from = host_.files.OpenForRead(path_);
  if (!from.file) {
    return false;
  }
  const OpenResult<OutputFile> to = host_.files.OpenForWrite(copyPath);
  if (!to.file) {
    return false;
  }
  StkFingerprint copied;
  bool written = true;
  std::array<char, 10240> buffer;
  while (const size_t count = written ? from.file->Read(buffer.data(), buffer.size()) : 0) {
    copied.Add({buffer.data(), count});
    written = to.file->Write({buffer.data(), count});
  }
  written = written && to.file->Synchronize();
  return to.file->Close() && written && copied.Value() == fingerprint;
}

}  // namespace velkor
