#include "files/text_input_file.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>

#include "files/lines.h"
#include "files/text_reader.h"
#include "support/test_host.h"

namespace velkor {
namespace {

using ReadLines = std::vector<testing::ReadLineResult>;

constexpr char kInputPath[] = "C:\\p\\file.txt";

struct TextModeReading : ::testing::Test {
  ReadLines Read(const std::string& bytes, size_t limit) {
    host.files.Put(kInputPath, bytes);
    TextInputFile file(host.files.OpenForRead(kInputPath).file, host.codePage);
    return testing::AllLines(file, limit);
  }

  testing::TestHost host{CodePage::Latin1()};
};

// A file whose first line never ends, of which somebody wants no more after some reading.
class Endless : public InputFile {
 public:
  explicit Endless(Event& stopEvent) : stopEvent_(stopEvent) {}
  size_t Read(char* buffer, size_t size) override {
    std::fill_n(buffer, size, 'x');
    if (++reads_ == 20) {
      stopEvent_.Set();
    }
    return reads_ < 1000 ? size : 0;
  }
  uint64_t Length() const override { return uint64_t{100} << 30; }

 private:
  Event& stopEvent_;
  int reads_ = 0;
};

TEST(EndlessLine, StopEndsTheReadingInTheMiddleOfIt) {
  TextLine line;
  const CodePage page = CodePage::Utf8();
  Event stopEvent(Event::Reset::kManual);
  TextInputFile file(std::make_unique<Endless>(stopEvent), page);
  file.StopOn(stopEvent);
  EXPECT_TRUE(file.ReadLine(line, kTextBufferSize));
  EXPECT_TRUE(file.Stopped());
  EXPECT_FALSE(file.LastLineEnded());

  stopEvent.ResetEvent();
  StkFileSource source(std::make_unique<Endless>(stopEvent));
  StkTextReader reader(source, &stopEvent);
  EXPECT_TRUE(reader.ReadLine(line, kTextBufferSize));
  EXPECT_TRUE(reader.Stopped());
}

TEST(CutLines, KeepNoPartOfACharacter) {
  testing::TestHost host(CodePage::Utf8());
  for (const size_t readLimit : {size_t{7}, size_t{SIZE_MAX}}) {
    host.files.SetReadLimit(readLimit);
    for (const auto& [text, kept] :
         std::map<std::string, std::string>{{"12345\xE3\x81\x82!\n", "12345"},
                                            {"1234\xE3\x81\x82\n", "1234\xE3\x81\x82"},
                                            {"123456\xE3\x81!", "123456\xE3"}}) {
      host.files.Put(kInputPath, text);
      TextInputFile file(host.files.OpenForRead(kInputPath).file, host.codePage);
      TextLine line;
      EXPECT_TRUE(file.ReadLine(line, 8));
      EXPECT_EQ(line.text, kept);
    }
  }
}

TEST_F(TextModeReading, LongLinesAreCutAndCountedWhole) {
  const std::string kept(5118, 'x');
  EXPECT_EQ((ReadLines{{kept, 5118}}), Read(kept + "\r\n", 5119));
  EXPECT_EQ((ReadLines{{kept, 5119}, {"", 0}}), Read(kept + "y\r\n\r\n", 5119));
  // Across many chunks, its carriage return at a chunk's end.
  const std::string huge((1 << 20) - 1, 'x');
  EXPECT_EQ((ReadLines{{kept, huge.size()}, {"z", 1}}), Read(huge + "\r\nz", 5119));
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
    ReadLines expected;
    for (size_t at = 0; at < text.size();) {
      const size_t end = std::min(text.find('\n', at), text.size());
      expected.push_back({text.substr(at, std::min(end - at, limit - 1)), end - at});
      at = end + 1;
    }
    host.files.SetReadLimit(1 + round % 5);
    ASSERT_EQ(expected, Read(bytes, limit)) << ::testing::PrintToString(bytes);
  }
}

}  // namespace
}  // namespace velkor
