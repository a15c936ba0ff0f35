#include "platform/host_file_system.h"

#include <atomic>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <thread>

#include "platform/host_file_system_case.h"

namespace velkor {
namespace {

namespace fs = std::filesystem;

using HostFileSystemTest = testing::HostFileSystemCase;
using testing::Content;

TEST_F(HostFileSystemTest, WritesAndReadsWholeFiles) {
  std::string bytes("a\r\n\0\x1A", 5);
  bytes.append(100000, 'x');
  folder_.Put("new", std::string(200000, 'o'));
  auto output = files_.OpenForWrite("new");
  ASSERT_TRUE(output.file);
  EXPECT_TRUE(output.file->Write(bytes) && output.file->Write(""));
  EXPECT_TRUE(output.file->Synchronize() && output.file->Close());
  EXPECT_FALSE(output.file->Write("late"));
  EXPECT_EQ(folder_.Get("new"), bytes);

  auto input = files_.OpenForRead("new");
  ASSERT_TRUE(input.file);
  EXPECT_EQ(input.file->Length(), bytes.size());
  EXPECT_EQ(Content(*input.file), bytes);
  EXPECT_EQ(Content(*input.file), "");
}

TEST_F(HostFileSystemTest, LocksAdmitReadersOnlyAndSpareTheContents) {
  folder_.Put("f", "kept");
  auto reader = files_.OpenForRead("f");
  EXPECT_EQ(ReadFailure("f"), FileFailure::kNone);
  EXPECT_EQ(WriteFailure("f"), FileFailure::kOther);
  EXPECT_EQ(folder_.Get("f"), "kept");
  reader.file.reset();
  auto writer = files_.OpenForWrite("f");
  ASSERT_TRUE(writer.file);
  EXPECT_EQ(ReadFailure("f"), FileFailure::kOther);
  EXPECT_EQ(WriteFailure("f"), FileFailure::kOther);
  EXPECT_TRUE(writer.file->Close());
  EXPECT_EQ(ReadFailure("f"), FileFailure::kNone);
}

TEST_F(HostFileSystemTest, AsksAboutTheFileThatGoes) {
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
TEST_F(HostFileSystemTest, NoUpdateOfSeveralAtOnceIsLost) {
  constexpr size_t kWanted = 60;
  constexpr int kMostRounds = 100000;
  std::atomic<size_t> done{0};
  const auto update = [&](const std::string& mine) {
    for (int round = 0; done < kWanted && round < kMostRounds; ++round) {
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
  EXPECT_GE(done, kWanted);
  EXPECT_EQ(folder_.Get("shared").size(), done);
}

}  // namespace
}  // namespace velkor
