#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace velkor {

enum class ByteOrder { kLittle, kBig };

// Reads numbers and texts from a span of bytes that others made. Nothing outside the span is ever
// read: what reaches over its end gives 0 or an empty text, and the reader has failed from then
// on. The bytes belong to the caller and must outlive what was answered.
class ByteReader {
 public:
  ByteReader(std::string_view bytes, ByteOrder order, uint64_t position = 0)
      : bytes_(bytes), order_(order) {
    Skip(position);
  }

  uint64_t Unsigned(size_t width) {
    const std::string_view taken = Take(width);
    uint64_t value = 0;
    for (size_t i = 0; i < taken.size(); ++i) {
      const size_t next = order_ == ByteOrder::kLittle ? taken.size() - 1 - i : i;
      value = value << 8 | static_cast<uint8_t>(taken[next]);
    }
    return value;
  }
  // Its highest bit is the sign.
  int64_t Signed(size_t width) { return Extended(Unsigned(width), width * 8); }
  uint8_t Byte() { return static_cast<uint8_t>(Unsigned(1)); }
  uint16_t Half() { return static_cast<uint16_t>(Unsigned(2)); }
  uint32_t Word() { return static_cast<uint32_t>(Unsigned(4)); }

  // Seven bits a byte, least significant first (LEB128). What 64 bits cannot hold is dropped.
  uint64_t VariableUnsigned() { return Variable().value; }
  int64_t VariableSigned() {
    const Groups groups = Variable();
    return Extended(groups.value, groups.bits);
  }

  // Up to the next NUL, which is passed as well.
  std::string_view Text() {
    const size_t end = bytes_.find('\0', position_);
    if (end == std::string_view::npos) {
      Fail();
      return {};
    }
    const std::string_view text = bytes_.substr(position_, end - position_);
    position_ = end + 1;
    return text;
  }
  std::string_view Take(uint64_t length) {
    if (length > bytes_.size() - position_) {
      Fail();
      return {};
    }
    const std::string_view taken = bytes_.substr(position_, static_cast<size_t>(length));
    position_ += taken.size();
    return taken;
  }
  void Skip(uint64_t length) { Take(length); }

  bool Failed() const { return failed_; }
  bool AtEnd() const { return position_ == bytes_.size(); }
  size_t Position() const { return position_; }

  // The lowest bits of a number, the highest of them its sign.
  static int64_t Extended(uint64_t value, uint64_t bits) {
    if (bits == 0 || bits >= 64) {
      return static_cast<int64_t>(value);
    }
    const uint64_t sign = uint64_t{1} << (bits - 1);
    value &= sign * 2 - 1;
    return static_cast<int64_t>((value ^ sign) - sign);
  }

 private:
  struct Groups {
    uint64_t value = 0;
    uint64_t bits = 0;
  };

  Groups Variable() {
    Groups groups;
    uint8_t byte = 0;
    do {
      byte = Byte();
      if (groups.bits < 64) {
        groups.value |= static_cast<uint64_t>(byte & 0x7FU) << groups.bits;
      }
      groups.bits += 7;
    } while ((byte & 0x80U) != 0);
    return groups;
  }
  void Fail() {
    failed_ = true;
    position_ = bytes_.size();
  }

  std::string_view bytes_;
  ByteOrder order_;
  size_t position_ = 0;
  bool failed_ = false;
};

}  // namespace velkor
