#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/file_system.h"

namespace velkor {

// What a StkTextReader reads from, without line-end translation. One thread at a time.
class StkByteSource {
 public:
  virtual ~StkByteSource() = default;
  // Bytes read, 0 at the end of the data.
  virtual size_t Read(char* buffer, size_t size) = 0;
  virtual uint64_t Length() const = 0;
};

class StkFileSource : public StkByteSource {
 public:
  explicit StkFileSource(std::unique_ptr<InputFile> file) : file_(std::move(file)) {}
  size_t Read(char* buffer, size_t size) override { return file_->Read(buffer, size); }
  uint64_t Length() const override { return file_->Length(); }

 private:
  std::unique_ptr<InputFile> file_;
};

// A block of memory that outlives the source.
class StkMemorySource : public StkByteSource {
 public:
  explicit StkMemorySource(std::string_view bytes) : bytes_(bytes) {}
  size_t Read(char* buffer, size_t size) override;
  uint64_t Length() const override { return bytes_.size(); }

 private:
  std::string_view bytes_;
  size_t position_ = 0;
};

}  // namespace velkor
