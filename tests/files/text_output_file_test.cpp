#include "files/text_output_file.h"

#include <gtest/gtest.h>

#include "files/lines.h"
#include "support/test_host.h"

namespace velkor {
namespace {

constexpr char kOutputPath[] = "C:\\p\\file.txt";

struct TextModeWriting : ::testing::Test {
  std::unique_ptr<OutputFile> Create() { return host.files.OpenForWrite(kOutputPath).file; }

  testing::TestHost host;
};

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
    TextOutputFile file(Create());
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
    ASSERT_TRUE(ok || host.files.Get(kOutputPath) == model.file);
    ASSERT_EQ(ok, file.Close());
    ASSERT_EQ(model.file, host.files.Get(kOutputPath));
  }
}

TEST_F(TextModeWriting, ManyPiecesFillTheBufferWithoutLoss) {
  TextOutputFile file(Create());
  std::string expected;
  for (const size_t size : {1u, 65535u, 65536u, 65537u, 7u, 200000u, 65534u}) {
    const std::string piece(size, static_cast<char>('a' + size % 26));
    ASSERT_TRUE(file.WriteString(piece + "\n"));
    expected += piece + "\r\n";
  }
  ASSERT_TRUE(file.Synchronize());
  EXPECT_TRUE(expected == host.files.Get(kOutputPath));
  EXPECT_TRUE(file.Close());
  EXPECT_TRUE(expected == host.files.Get(kOutputPath));
}

TEST_F(TextModeWriting, AFullDeviceFailsTheWriteAndWhatFollows) {
  host.files.SetCapacity(100000);
  TextOutputFile large(Create());
  ASSERT_TRUE(large.WriteString(std::string(65536, 'x')));
  EXPECT_FALSE(large.WriteString(std::string(65536, 'x')));
  EXPECT_FALSE(large.WriteString("y"));
  EXPECT_FALSE(large.LineLimitReached() || large.CharLimitReached());
  EXPECT_FALSE(large.Close());
  EXPECT_TRUE(std::string(100000, 'x') == host.files.Get(kOutputPath));
}

}  // namespace
}  // namespace velkor
