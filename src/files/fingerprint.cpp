#include "files/fingerprint.h"

#include <array>

namespace velkor {

void StkFingerprint::Add(std::string_view bytes) {
  for (const char byte : bytes) {
    value_ = (value_ ^ static_cast<unsigned char>(byte)) * 1099511628211u;
  }
}

size_t StkFingerprintSource::Read(char* buffer, size_t size) {
  const size_t count = source_->Read(buffer, size);
  fingerprint_.Add({buffer, count});
  return count;
}

std::optional<uint64_t> FileFingerprint(InputFile& file) {
  StkFingerprint fingerprint;
  uint64_t length = 0;
  std::array<char, 10240> buffer;
  while (const size_t count = file.Read(buffer.data(), buffer.size())) {
    fingerprint.Add({buffer.data(), count});
    length += count;
  }
  if (length != file.Length()) {
    return std::nullopt;
  }
  return fingerprint.Value();
}

std::optional<uint64_t> FileFingerprint(FileSystem& files, std::string_view path) {
  const OpenResult<InputFile> opened = files.OpenForRead(path);
  return opened.file ? FileFingerprint(*opened.file) : std::nullopt;
}

}  // namespace velkor
