#include "files/text_reader.h"

#include "files/lines.h"
#include "support/test_host.h"

namespace velkor {
namespace {

using ReadLines = std::vector<testing::ReadLineResult>;

constexpr char kFilePath[] = "C:\\p\\file.txt";

TEST(TextReader, PositionGrowsWithTheLinesAnswered) {
  StkMemorySource source("ab\r\nc\rd\n");
  StkTextReader reader(source);
  TextLine line;
  std::vector<uint64_t> positions;
  while (reader.ReadLine(line, 5120)) {
    positions.push_back(reader.Position());
  }
  EXPECT_EQ((std::vector<uint64_t>{4, 6, 8}), positions);
}

// Byte by byte, with one byte of look-ahead.
ReadLines ModelLines(const std::string& bytes, size_t size) {
  ReadLines lines;
  size_t i = 0;
  while (i < bytes.size()) {
    testing::ReadLineResult line{"", 0};
    while (i < bytes.size() && bytes[i] != '\r' && bytes[i] != '\n') {
      if (line.length < size - 1) {
        line.text += bytes[i];
      }
      ++line.length;
      ++i;
    }
    i += i + 1 < bytes.size() && bytes[i] == '\r' && bytes[i + 1] == '\n' ? 2u : 1u;
    lines.push_back(line);
  }
  return lines;
}

TEST(TextReader, AgreesWithTheModelOnAnyBytesInAnyPieces) {
  testing::TestHost host;
  std::mt19937 random(20240601);
  for (uint32_t round = 0; round < 4000; ++round) {
    const std::string bytes = testing::RandomBytes(random, 40, true);
    const size_t size = 1 + round % 6;
    host.files.Put(kFilePath, bytes);
    host.files.SetReadLimit(1 + round % 5);
    StkFileSource source(host.files.OpenForRead(kFilePath).file);
    StkTextReader reader(source);
    ASSERT_EQ(ModelLines(bytes, size), testing::AllLines(reader, size))
        << ::testing::PrintToString(bytes);
    ASSERT_EQ(reader.Position(), bytes.size());
  }
}

}  // namespace
}  // namespace velkor
