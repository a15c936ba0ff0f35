#include "files/text_reader.h"

#include <gtest/gtest.h>

#include "files/lines.h"

namespace velkor {
namespace {

using Lines = std::vector<testing::ReadLineResult>;

Lines Read(std::string_view bytes, size_t size = 5120) {
  StkMemorySource source(bytes);
  StkTextReader reader(source);
  Lines lines = testing::AllLines(reader, size);
  EXPECT_EQ(bytes.size(), reader.Position());
  TextLine line;
  EXPECT_FALSE(reader.ReadLine(line, size));
  return lines;
}

TEST(TextReader, EveryLineEndIsOne) {
  EXPECT_EQ((Lines{{"a", 1}, {"b", 1}, {"c", 1}, {"d", 1}}), Read("a\r\nb\rc\nd"));
  EXPECT_EQ((Lines{{"a", 1}}), Read("a\r"));
  EXPECT_EQ((Lines{{"", 0}}), Read("\n"));
  EXPECT_EQ((Lines{{"", 0}, {"", 0}, {"", 0}}), Read("\r\r\n\n"));
  EXPECT_EQ(Lines{}, Read(""));
}

TEST(TextReader, ALongLineIsCutAndCountedWhole) {
  const std::string longLine(6000, 'x');
  EXPECT_EQ((Lines{{longLine.substr(0, 5119), 6000}, {"y", 1}}), Read(longLine + "\ny"));
  const std::string full(5119, 'x');
  EXPECT_EQ((Lines{{full, 5119}}), Read(full + "\r\n"));
  const std::string huge(1 << 20, 'x');
  EXPECT_EQ((Lines{{full, huge.size()}, {"", 0}}), Read(huge + "\r\n\r\n"));
}

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
Lines ModelLines(const std::string& bytes, size_t size) {
  Lines lines;
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
  std::mt19937 random(20240601);
  for (uint32_t round = 0; round < 4000; ++round) {
    const std::string bytes = testing::RandomBytes(random, 40, true);
    const size_t size = 1 + round % 6;
    testing::TrickleSource source(bytes, 1 + round % 3, round);
    StkTextReader reader(source);
    ASSERT_EQ(ModelLines(bytes, size), testing::AllLines(reader, size))
        << ::testing::PrintToString(bytes);
  }
}

}  // namespace
}  // namespace velkor
