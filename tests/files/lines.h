#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "files/byte_source.h"
#include "files/text_line.h"
#include "platform/file_system.h"

namespace velkor::testing {

// A line as a reader should answer it.
struct ReadLineResult {
  std::string text;
  uint64_t length;
  bool operator==(const ReadLineResult&) const = default;
};

inline void PrintTo(const ReadLineResult& line, std::ostream* out) {
  *out << line.length << ':' << ::testing::PrintToString(line.text);
}

// Every line that reader.ReadLine answers.
template <typename Reader>
std::vector<ReadLineResult> AllLines(Reader& reader, size_t size) {
  std::vector<ReadLineResult> lines;
  TextLine line;
  while (reader.ReadLine(line, size)) {
    lines.push_back({std::string(line.text), line.length});
  }
  return lines;
}

// Hands out bytes in pieces of 1 to `largest` bytes, so that every line border meets a piece's.
class Trickle {
 public:
  Trickle(std::string bytes, size_t largest, uint32_t seed)
      : bytes_(std::move(bytes)), sizes_(1, largest), random_(seed) {}

  size_t Take(char* buffer, size_t size) {
    const size_t count = std::min({size, bytes_.size() - position_, sizes_(random_)});
    bytes_.copy(buffer, count, position_);
    position_ += count;
    return count;
  }
  uint64_t size() const { return bytes_.size(); }

 private:
  std::string bytes_;
  std::uniform_int_distribution<size_t> sizes_;
  std::mt19937 random_;
  size_t position_ = 0;
};

class TrickleSource : public StkByteSource {
 public:
  TrickleSource(std::string bytes, size_t largest, uint32_t seed)
      : trickle_(std::move(bytes), largest, seed) {}
  size_t Read(char* buffer, size_t size) override { return trickle_.Take(buffer, size); }
  uint64_t Length() const override { return trickle_.size(); }

 private:
  Trickle trickle_;
};

class TrickleFile : public InputFile {
 public:
  TrickleFile(std::string bytes, size_t largest, uint32_t seed)
      : trickle_(std::move(bytes), largest, seed) {}
  size_t Read(char* buffer, size_t size) override { return trickle_.Take(buffer, size); }
  uint64_t Length() const override { return trickle_.size(); }

 private:
  Trickle trickle_;
};

// Bytes in which line ends, their halves and the end-of-text mark are frequent.
inline std::string RandomBytes(std::mt19937& random, size_t longest, bool endOfText) {
  static constexpr char kBytes[] = {'\n', '\r', '\n', '\r', 'a', 'b', '\0', '\xFF'};
  std::uniform_int_distribution<size_t> lengths(0, longest);
  std::uniform_int_distribution<size_t> kinds(0, 99);
  std::string bytes;
  for (size_t left = lengths(random); left > 0; --left) {
    const size_t kind = kinds(random);
    bytes += kind == 99 && endOfText ? '\x1A' : kBytes[kind % 8];
  }
  return bytes;
}

}  // namespace velkor::testing
