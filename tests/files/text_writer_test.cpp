#include "files/text_writer.h"

#include <gtest/gtest.h>

#include "files/lines.h"
#include "messages/message_key.h"
#include "support/test_host.h"

namespace velkor {
namespace {

using Lines = std::vector<testing::ReadLineResult>;

constexpr char kFilePath[] = "C:\\p\\file.txt";

struct WriterTest : ::testing::Test {
  Lines Read(const std::string& bytes, size_t limit) {
    host.files.Put(kFilePath, bytes);
    StkTextWriter file(host.host);
    EXPECT_TRUE(file.OpenForRead(kFilePath).ok);
    return testing::AllLines(file, limit);
  }

  testing::TestHost host;
};

using TextModeReading = WriterTest;
using TextModeWriting = WriterTest;

TEST_F(TextModeReading, LongLinesAreCutAndCountedWhole) {
  const std::string kept(5118, 'x');
  EXPECT_EQ((Lines{{kept, 5118}}), Read(kept + "\r\n", 5119));
  EXPECT_EQ((Lines{{kept, 5119}, {"", 0}}), Read(kept + "y\r\n\r\n", 5119));
  // Across many chunks, its carriage return at a chunk's end.
  const std::string huge((1 << 20) - 1, 'x');
  EXPECT_EQ((Lines{{kept, huge.size()}, {"z", 1}}), Read(huge + "\r\nz", 5119));
}

TEST_F(TextModeReading, AgreesWithTheModelOnAnyBytesInAnyPieces) {
  std::mt19937 random(20240602);
  for (uint32_t round = 0; round < 4000; ++round) {
    const std::string bytes = testing::RandomBytes(random, 40, true);
    const size_t limit = 1 + round % 6;
    std::string text = bytes.substr(0, bytes.find('\x1A'));
    for (size_t at = 0; (at = text.find("\r\n", at)) != std::string::npos;) {
      text.erase(at, 1);
      ++at;
    }
    Lines expected;
    for (size_t at = 0; at < text.size();) {
      const size_t end = std::min(text.find('\n', at), text.size());
      expected.push_back({text.substr(at, std::min(end - at, limit - 1)), end - at});
      at = end + 1;
    }
    host.files.SetReadLimit(1 + round % 5);
    ASSERT_EQ(expected, Read(bytes, limit)) << ::testing::PrintToString(bytes);
  }
}

TEST_F(TextModeReading, FailuresOfOpening) {
  host.files.AddDirectory("C:\\p");
  StkTextWriter file(host.host);
  EXPECT_EQ(MessageKey::kW9431, file.OpenForRead("C:\\p\\missing.asm").failure);
  EXPECT_EQ(MessageKey::kW9401, file.OpenForRead("C:\\p").failure);
  EXPECT_EQ(MessageKey::kW9402, file.OpenForWrite("C:\\p").failure);
  EXPECT_EQ("C:\\p", file.Path());
  TextLine line;
  EXPECT_FALSE(file.ReadLine(line, 5119));
  EXPECT_FALSE(file.WriteString("x"));
}

// One character after the other.
struct CharacterModel {
  bool Write(std::string_view text) {
    for (const char c : text) {
      if (maxLines != 0 && lines >= maxLines) {
        return false;
      }
      if (c != '\n' && maxChars != 0 && chars >= maxChars) {
        if (!wrap) {
          tooLong = true;
          return false;
        }
        file += "\r\n";
        ++lines;
        chars = 0;
        if (maxLines != 0 && lines >= maxLines) {
          return false;
        }
      }
      file += c == '\n' ? "\r\n" : std::string(1, c);
      lines += c == '\n' ? 1 : 0;
      chars = c == '\n' ? 0 : chars + 1;
    }
    return true;
  }

  uint32_t maxLines;
  uint32_t maxChars;
  bool wrap;
  uint32_t lines = 0;
  uint32_t chars = 0;
  bool tooLong = false;
  std::string file = {};
};

TEST_F(TextModeWriting, AgreesWithTheModelOnAnyTexts) {
  std::mt19937 random(20240603);
  for (uint32_t round = 0; round < 3000; ++round) {
    CharacterModel model{round % 7, round / 7 % 5, round % 2 == 0};
    StkTextWriter file(host.host);
    ASSERT_TRUE(file.OpenForWrite(kFilePath).ok);
    file.SetLimits(model.maxLines, model.maxChars, model.wrap);
    bool ok = true;
    while (ok && model.file.size() < 60) {
      const std::string text = testing::RandomBytes(random, 12, false);
      ok = model.Write(text);
      ASSERT_EQ(ok, file.WriteString(text));
    }
    ASSERT_EQ(!ok && model.tooLong, file.CharLimitReached());
    ASSERT_EQ(!ok && !model.tooLong, file.LineLimitReached());
    const bool limited = model.maxLines != 0 || model.maxChars != 0;
    ASSERT_EQ(limited ? model.lines : 0, file.LinesWritten());
    // What precedes a limit is in the file before it is closed.
    ASSERT_TRUE(ok || host.files.Get(kFilePath) == model.file);
    ASSERT_EQ(ok, file.Close());
    ASSERT_EQ(model.file, host.files.Get(kFilePath));
  }
}

TEST_F(TextModeWriting, ManyPiecesFillTheBufferWithoutLoss) {
  StkTextWriter file(host.host);
  ASSERT_TRUE(file.OpenForWrite(kFilePath).ok);
  std::string expected;
  for (const size_t size : {1u, 65535u, 65536u, 65537u, 7u, 200000u, 65534u}) {
    const std::string piece(size, static_cast<char>('a' + size % 26));
    ASSERT_TRUE(file.WriteString(piece + "\n"));
    expected += piece + "\r\n";
  }
  ASSERT_TRUE(file.Synchronize());
  EXPECT_TRUE(expected == host.files.Get(kFilePath));
  EXPECT_TRUE(file.Close());
  EXPECT_TRUE(expected == host.files.Get(kFilePath));
}

TEST_F(TextModeWriting, AFullDeviceFailsTheWriteOrTheClose) {
  host.files.SetCapacity(100000);
  StkTextWriter large(host.host);
  ASSERT_TRUE(large.OpenForWrite(kFilePath).ok);
  ASSERT_TRUE(large.WriteString(std::string(65536, 'x')));
  EXPECT_FALSE(large.WriteString(std::string(65536, 'x')));
  EXPECT_FALSE(large.WriteString("y"));
  EXPECT_FALSE(large.LineLimitReached() || large.CharLimitReached());
  large.Abort();
  EXPECT_TRUE(std::string(100000, 'x') == host.files.Get(kFilePath));

  host.files.SetCapacity(1);
  StkTextWriter small(host.host);
  ASSERT_TRUE(small.OpenForWrite(kFilePath).ok);
  EXPECT_TRUE(small.WriteString("ab"));
  EXPECT_FALSE(small.Close());
}

TEST_F(TextModeWriting, AbandonedWritersLeaveWhatTheyWrote) {
  {
    StkTextWriter file(host.host);
    ASSERT_TRUE(file.OpenForWrite(kFilePath).ok);
    ASSERT_TRUE(file.WriteString("kept\n"));
    // Nobody else may open it meanwhile.
    EXPECT_EQ(MessageKey::kW9402, StkTextWriter(host.host).OpenForWrite(kFilePath).failure);
    EXPECT_EQ(MessageKey::kW9401, StkTextWriter(host.host).OpenForRead(kFilePath).failure);
  }
  EXPECT_EQ("kept\r\n", host.files.Get(kFilePath));
}

}  // namespace
}  // namespace velkor
