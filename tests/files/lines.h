#pragma once

#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "files/text_line.h"

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

// Bytes in which line ends, their halves and the end-of-text mark are frequent.
inline std::string RandomBytes(std::mt19937& random, size_t longest, bool endOfText) {
  static constexpr char kBytes[] = {'\n', '\r', '\n', '\r', 'a', 'b', '\0', '\xFF'};
  std::string bytes;
  for (size_t left = random() % (longest + 1); left > 0; --left) {
    const size_t kind = random() % 100;
    bytes += kind == 99 && endOfText ? '\x1A' : kBytes[kind % 8];
  }
  return bytes;
}

}  // namespace velkor::testing
