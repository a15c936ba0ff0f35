#include "files/byte_source.h"

#include <algorithm>
#include <cstring>

namespace velkor {

size_t StkMemorySource::Read(char* buffer, size_t size) {
  const size_t count = std::min(size, bytes_.size() - position_);
  if (count > 0) {
    std::memcpy(buffer, bytes_.data() + position_, count);
    position_ += count;
  }
  return count;
}

}  // namespace velkor
