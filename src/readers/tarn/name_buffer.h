#pragma once

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/code_page.h"
#include "platform/limits.h"

namespace velkor {

// A name gathered piece by piece in a fixed space. What no longer fits is dropped, at a character
// border, and so is everything after it.
class NameBuffer {
 public:
  static constexpr size_t kCapacity = kTextBufferSize;

  explicit NameBuffer(const CodePage& codePage) : codePage_(codePage) {}

  const CodePage& GetCodePage() const { return codePage_; }
  std::string_view Text() const { return {bytes_.data(), size_}; }
  void Clear() {
    size_ = 0;
    full_ = false;
  }
  void Append(std::string_view piece) {
    if (full_) {
      return;
    }
    const size_t room = kCapacity - size_;
    const size_t length = piece.size() <= room ? piece.size() : codePage_.CutLength(piece, room);
    full_ = length < piece.size();
    std::copy_n(piece.data(), length, bytes_.data() + size_);
    size_ += length;
  }

 private:
  const CodePage& codePage_;
  std::array<char, kCapacity> bytes_;
  size_t size_ = 0;
  bool full_ = false;
};

}  // namespace velkor
