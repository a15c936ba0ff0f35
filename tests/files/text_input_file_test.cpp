#include "files/text_input_file.h"

#include <gtest/gtest.h>

#include "files/lines.h"
#include "support/test_host.h"

namespace velkor {
namespace {

using Lines = std::vector<testing::ReadLineResult>;

constexpr char kFilePath[] = "C:\\p\\file.txt";

struct TextModeReading : ::testing::Test {
  Lines Read(const std::string& bytes, size_t limit) {
    host.files.Put(kFilePath, bytes);
    TextInputFile file(host.files.OpenForRead(kFilePath).file);
    return testing::AllLines(file, limit);
  }

  testing::TestHost host;
};

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

}  // namespace
}  // namespace velkor
