#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include "files/byte_source.h"
#include "platform/file_system.h"

namespace velkor {

// A short form of a file's content, by which a later content is told from it. Not made to resist
// anyone who wants two contents to look alike.
class StkFingerprint {
 public:
  void Add(std::string_view bytes);
  uint64_t Value() const { return value_; }

 private:
  uint64_t value_ = 14695981039346656037u;
};

// Passes on another source and takes the fingerprint of what is read from it.
class StkFingerprintSource : public StkByteSource {
 public:
  StkFingerprintSource(std::unique_ptr<StkByteSource> source, StkFingerprint& fingerprint)
      : source_(std::move(source)), fingerprint_(fingerprint) {}

  size_t Read(char* buffer, size_t size) override;
  uint64_t Length() const override { return source_->Length(); }

 private:
  std::unique_ptr<StkByteSource> source_;
  StkFingerprint& fingerprint_;
};

// None when the file cannot be read whole. An open one is read from where it stands.
std::optional<uint64_t> FileFingerprint(InputFile& file);
std::optional<uint64_t> FileFingerprint(FileSystem& files, std::string_view path);

}  // namespace velkor
