#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "platform/file_system.h"

namespace velkor {

// Bytes that have been read already.
class TakenInput : public InputFile {
 public:
  // More are not taken.
  static constexpr size_t kMostBytes = size_t{256} << 20;

  explicit TakenInput(std::string bytes) : bytes_(std::move(bytes)) {}

  size_t Read(char* buffer, size_t size) override {
    const size_t read = bytes_.copy(buffer, size, position_);
    position_ += read;
    return read;
  }
  uint64_t Length() const override { return bytes_.size(); }

 private:
  const std::string bytes_;
  size_t position_ = 0;
};

}  // namespace velkor
