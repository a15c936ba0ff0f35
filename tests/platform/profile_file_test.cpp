#include "platform/profile_file.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <gtest/gtest.h>

namespace velkor {
namespace {

// A file that never ends, in pieces of odd sizes.
class Endless : public InputFile {
 public:
  size_t Read(char* buffer, size_t size) override {
    const size_t count = std::min<size_t>(size, 4093);
    std::memset(buffer, 'x', count);
    read += count;
    return count;
  }
  uint64_t Length() const override { return 1; }

  uint64_t read = 0;
};

TEST(ProfileFileTest, HugeFilesCostBoundedTimeAndMemory) {
  const CodePage page = CodePage::Utf8();
  Endless endless;
  const ProfileFile unbounded(page, endless);
  EXPECT_LE(endless.read, ProfileFile::kMaxBytes);

  // Long equal names are what comparing costs most on.
  const std::string name(size_t{1} << 20, 'n');
  std::string text;
  for (int i = 0; i < 8; ++i) {
    text += '[' + name + "]\n";
    for (int key = 0; key < 20000; ++key) {
      text += 'k' + std::to_string(key) + "=v" + std::to_string(i) + '\n';
    }
  }
  const std::clock_t start = std::clock();
  const ProfileFile file(page, std::move(text));
  EXPECT_EQ(file.GetString(name, "K19999"), "v0");
  EXPECT_LT(std::clock() - start, 20 * CLOCKS_PER_SEC);
}

}  // namespace
}  // namespace velkor
