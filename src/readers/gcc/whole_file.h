#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "platform/file_system.h"

namespace velkor {

// All bytes of a file. Views into them hold as long as it lives, also when it is moved.
class WholeFile {
 public:
  WholeFile() = default;
  explicit WholeFile(InputFile& file) { Read(file); }

  // From where the file stands to its end, in the place of what was there; the memory is kept.
  void Read(InputFile& file);
  std::string_view Bytes() const { return {bytes_.get(), size_}; }
  // Fewer bytes came than the file was long when it was opened.
  bool IsCutShort() const { return isCutShort_; }

 private:
  std::unique_ptr<char[]> bytes_;
  size_t size_ = 0;
  size_t capacity_ = 0;
  bool isCutShort_ = false;
};

}  // namespace velkor
