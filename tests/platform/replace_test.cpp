#include <atomic>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include "platform/host_file_system.h"
#include "platform/temporary_folder.h"

namespace velkor {
namespace {

namespace fs = std::filesystem;

std::string Content(InputFile& file) {
  std::string content(file.Length() + 1, '\0');
  content.resize(file.Read(content.data(), content.size()));
  return content;
}

class ReplaceTest : public ::testing::Test {
 protected:
  const testing::TemporaryFolder folder_;
  const CodePage codePage_ = CodePage::Utf8();
  const HostPaths paths_{codePage_};
  HostFileSystem files_{paths_};
};

TEST_F(ReplaceTest, AsksAboutTheFileThatGoes) {
  folder_.Put("old", "old");
  folder_.Put("next", "new");
  const auto refuse = [&](InputFile* old) {
    EXPECT_EQ(old == nullptr ? "none" : Content(*old), "old");
    EXPECT_EQ(files_.OpenForRead("old").failure, FileFailure::kOther) << "it is held";
    return false;
  };
  EXPECT_FALSE(files_.Replace("next", "old", refuse));
  EXPECT_EQ(folder_.Get("old"), "old");
  EXPECT_EQ(folder_.Get("next"), "new");
  EXPECT_TRUE(files_.Replace("next", "old", [](InputFile* old) { return old != nullptr; }));
  EXPECT_EQ(folder_.Get("old"), "new");
  EXPECT_EQ(files_.OpenForRead("old").failure, FileFailure::kNone) << "it is no longer held";

  folder_.Put("next", "first");
  EXPECT_FALSE(files_.Replace("next", "unseen", [](InputFile* old) { return old != nullptr; }));
  EXPECT_FALSE(fs::exists("unseen"));
  const auto interfere = [&](InputFile* old) {
    folder_.Put("unseen", "another's");
    return old == nullptr;
  };
  EXPECT_FALSE(files_.Replace("next", "unseen", interfere));
  EXPECT_EQ(folder_.Get("unseen"), "another's");
}

// Each update appends one character to what it has seen, so a lost one shows in the length.
TEST_F(ReplaceTest, NoUpdateOfSeveralAtOnceIsLost) {
  constexpr int kRounds = 300;
  std::atomic<size_t> done{0};
  const auto update = [&](const std::string& mine) {
    for (int round = 0; round < kRounds; ++round) {
      auto seen = files_.OpenForRead("shared");
      if (seen.failure == FileFailure::kOther) {
        continue;
      }
      const std::string before = seen.file ? Content(*seen.file) : "";
      const bool wasThere = seen.file != nullptr;
      folder_.Put(mine, before + "x");
      const auto unchanged = [&](InputFile* old) {
        return old == nullptr ? !wasThere : wasThere && Content(*old) == before;
      };
      seen.file.reset();
      done += files_.Replace(mine, "shared", unchanged) ? 1 : 0;
    }
  };
  std::thread other([&] { update("one"); });
  update("two");
  other.join();
  EXPECT_GT(done, 10U);
  EXPECT_EQ(folder_.Get("shared").size(), done);
}

TEST_F(ReplaceTest, AFileThatIsShortenedWhileItIsReadEndsBeforeItsLength) {
  folder_.Put("f", std::string(100000, 'x'));
  const auto opened = files_.OpenForRead("f");
  char buffer[1000];
  EXPECT_EQ(opened.file->Read(buffer, sizeof buffer), sizeof buffer);
  ASSERT_EQ(truncate("f", 1500), 0);  // a program that knows no locks
  EXPECT_EQ(opened.file->Read(buffer, sizeof buffer), 500U);
  EXPECT_EQ(opened.file->Read(buffer, sizeof buffer), 0U);
  EXPECT_EQ(opened.file->Length(), 100000U);
}

}  // namespace
}  // namespace velkor
