#include "readers/gcc/whole_file.h"

namespace velkor {

void WholeFile::Read(InputFile& file) {
  const auto length = static_cast<size_t>(file.Length());
  size_ = 0;
  if (length > capacity_ || bytes_ == nullptr) {
    capacity_ = 0;
    bytes_ = std::make_unique_for_overwrite<char[]>(length);
    capacity_ = length;
  }
  while (size_ < length) {
    const size_t count = file.Read(bytes_.get() + size_, length - size_);
    if (count == 0) {
      break;
    }
    size_ += count;
  }
  isCutShort_ = size_ < length;
}

}  // namespace velkor
