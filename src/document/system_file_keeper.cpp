#include "document/system_file_keeper.h"

#include <array>

#include "document/fingerprint.h"

namespace velkor {

namespace {

constexpr int kMaxCopies = 99;

}  // namespace

bool StkSystemFileKeeper::Keep(std::optional<uint64_t> known) {
  if (host_.files.OpenForRead(path_).failure == FileFailure::kNotFound) {
    return true;
  }
  const std::optional<uint64_t> content = FileFingerprint(host_.files, path_);
  if (!content) {
    return false;
  }
  return content == known || Copy(*content);
}

bool StkSystemFileKeeper::Copy(uint64_t fingerprint) {
  for (int number = 1; number <= kMaxCopies; ++number) {
    const std::string copyPath = path_ + ".bak" + (number == 1 ? "" : std::to_string(number));
    if (host_.files.Exists(copyPath)) {
      if (FileFingerprint(host_.files, copyPath) == fingerprint) {
        return true;
      }
    } else if (CopyTo(copyPath, fingerprint)) {
      reporter_.PostLog(MessageKey::kWritingCompleted, {copyPath});
      return true;
    } else {
      return false;
    }
  }
  return false;
}

bool StkSystemFileKeeper::CopyTo(const std::string& copyPath, uint64_t fingerprint) {
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
  written = to.file->Close() && written && copied.Value() == fingerprint;
  if (!written) {
    host_.files.Remove(copyPath);
  }
  return written;
}

}  // namespace velkor
