#include "platform/host_file_system.h"

#include <atomic>
#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "platform/profile_file.h"
#include "platform/temporary_folder.h"

namespace velkor {
namespace {

namespace fs = std::filesystem;

std::string Content(InputFile& file) {
  std::string content(file.Length() + 1, '\0');
  content.resize(file.Read(content.data(), content.size()));
  return content;
}

class HostFileSystemTest : public ::testing::Test {
 protected:
  FileFailure ReadFailure(std::string_view path) { return files_.OpenForRead(path).failure; }
  FileFailure WriteFailure(std::string_view path) { return files_.OpenForWrite(path).failure; }

  const testing::TemporaryFolder folder_;
  const CodePage codePage_ = CodePage::Utf8();
  const HostPaths paths_{codePage_};
  HostFileSystem files_{paths_};
};

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

// As a device that fills up: it takes a part of the bytes and then no more.
TEST_F(HostFileSystemTest, AWriteOfWhichOnlyAPartFitsFails) {
  const auto output = files_.OpenForWrite("f");
  ASSERT_TRUE(output.file);
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit limit{1000, before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  const bool written = output.file->Write(std::string(1500, 'x'));
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_FALSE(written);
  EXPECT_EQ(folder_.Get("f").size(), 1000U);
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

TEST_F(HostFileSystemTest, TellsMissingFilesFromOtherFailuresAndNeverWaits) {
  fs::create_directory("folder");
  folder_.Put("file", "");
  ASSERT_EQ(mkfifo("fifo", 0666), 0);
  fs::create_symlink("loop", "loop");
  const std::pair<std::string, FileFailure> cases[] = {
      {"missing", FileFailure::kNotFound},
      {"missing/x", FileFailure::kNotFound},
      {"file/x", FileFailure::kNotFound},
      {std::string("file\0", 5), FileFailure::kNotFound},
      {"folder", FileFailure::kOther},
      {"fifo", FileFailure::kOther},
      {"loop", FileFailure::kOther},
      {"/dev/zero", FileFailure::kOther},
      {std::string(300, 'n'), FileFailure::kOther}};
  for (const auto& [path, failure] : cases) {
    EXPECT_EQ(ReadFailure(path), failure) << path;
    if (path != "missing" && path != "/dev/zero") {
      EXPECT_EQ(WriteFailure(path), failure) << path;
    }
  }
  EXPECT_FALSE(files_.OpenForRead("missing").file || files_.OpenForWrite("folder").file);
  EXPECT_FALSE(fs::exists("missing"));
}

TEST_F(HostFileSystemTest, AsksWithoutOpening) {
  folder_.Put("Folder/file", "");
  fs::create_symlink("Folder/file", "link");
  fs::create_symlink("nowhere", "dangling");
  EXPECT_TRUE(files_.Exists("Folder\\file") && files_.Exists("Folder") && files_.Exists("link"));
  EXPECT_FALSE(files_.Exists("dangling") || files_.Exists("") || files_.Exists("Folder/file/x"));
  EXPECT_TRUE(files_.IsDirectory("Folder\\"));
  EXPECT_FALSE(files_.IsDirectory("link") || files_.IsDirectory("nowhere"));
  EXPECT_TRUE(files_.IsSameFile("Folder\\..\\Folder/file", "LINK"));
  EXPECT_FALSE(files_.IsSameFile("link", "Folder") || files_.IsSameFile("nowhere", "nowhere"));
  EXPECT_TRUE(files_.Remove("link"));
  EXPECT_FALSE(files_.Remove("link") || files_.Remove("Folder"));
  EXPECT_TRUE(files_.Exists("Folder/file"));
}

TEST_F(HostFileSystemTest, OnlyWhatAProjectStatesIsLookedUp) {
  folder_.Put("Folder/file", "kept");
  EXPECT_TRUE(files_.OpenForRead("folder\\FILE", Spelling::kOfProject).file);
  EXPECT_TRUE(files_.Exists("folder\\FILE", Spelling::kOfProject));
  EXPECT_TRUE(files_.IsDirectory("FOLDER", Spelling::kOfProject));
  EXPECT_EQ(ReadFailure("Folder/FILE"), FileFailure::kNotFound);
  EXPECT_FALSE(files_.Exists("Folder/FILE") || files_.IsDirectory("FOLDER"));
  EXPECT_FALSE(files_.IsSameFile("Folder/FILE", "Folder/file"));
  EXPECT_FALSE(files_.Remove("Folder/FILE"));
  EXPECT_EQ(WriteFailure("Folder/FILE"), FileFailure::kNone);
  folder_.Put("next", "new");
  EXPECT_TRUE(files_.Replace("next", "Folder/File"));
  EXPECT_EQ(folder_.Get("Folder/file"), "kept");
}

TEST_F(HostFileSystemTest, ReplaceKeepsLinksAndPermissions) {
  folder_.Put("data/old", "old");
  ASSERT_EQ(chmod("data/old", 0640), 0);
  fs::create_symlink("data/old", "middle");
  fs::create_symlink(folder_ / "middle", "link");
  folder_.Put("next", "new");
  EXPECT_TRUE(files_.Replace("next", "link"));
  EXPECT_EQ(folder_.Get("data/old"), "new");
  EXPECT_TRUE(fs::is_symlink("link") && fs::is_symlink("middle"));
  EXPECT_FALSE(fs::exists("next"));
  struct stat status {};
  ASSERT_EQ(stat("data/old", &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0640U);

  fs::create_symlink("data/first", "dangling");
  folder_.Put("next", "first");
  EXPECT_TRUE(files_.Replace("next", "dangling"));
  EXPECT_EQ(folder_.Get("data/first"), "first");
  EXPECT_TRUE(fs::is_symlink("dangling"));
  folder_.Put("next", "second");
  EXPECT_TRUE(files_.Replace("next", "unseen"));
  EXPECT_EQ(folder_.Get("unseen"), "second");
}

TEST_F(HostFileSystemTest, ReplaceRefusesWithoutATrace) {
  folder_.Put("old", "old");
  folder_.Put("next", "new");
  fs::create_directory("folder");
  ASSERT_EQ(mkfifo("fifo", 0666), 0);
  {
    const auto reader = files_.OpenForRead("old");
    EXPECT_FALSE(files_.Replace("next", "old"));
  }
  EXPECT_FALSE(files_.Replace("next", "folder"));
  EXPECT_FALSE(files_.Replace("next", "fifo"));
  EXPECT_FALSE(files_.Replace("next", "missing/x"));
  EXPECT_FALSE(files_.Replace("missing", "old"));
  EXPECT_FALSE(files_.Replace("folder", "unseen"));
  EXPECT_EQ(folder_.Get("old"), "old");
  EXPECT_EQ(folder_.Get("next"), "new");
  auto writer = files_.OpenForWrite("old");
  EXPECT_FALSE(files_.Replace("next", "old"));
  writer.file.reset();
  EXPECT_TRUE(files_.Replace("next", "old"));
  EXPECT_EQ(ReadFailure("old"), FileFailure::kNone);
}

// Where the tests have every right, as a user who owns nothing.
TEST_F(HostFileSystemTest, WhatTheUserProtectedStays) {
  constexpr uid_t kNobody = 65534;
  for (const auto& [name, mode] : {std::pair("next", 0644), {"shown", 0444}, {"hidden", 0}}) {
    folder_.Put(name, name);
    ASSERT_EQ(chmod(name, static_cast<mode_t>(mode)), 0);
  }
  ASSERT_EQ(chmod(".", 0777), 0);
  const uid_t user = geteuid();
  ASSERT_TRUE(user != 0 || seteuid(kNobody) == 0);
  EXPECT_EQ(WriteFailure("shown"), FileFailure::kOther);
  EXPECT_FALSE(files_.Replace("next", "shown"));
  EXPECT_EQ(ReadFailure("hidden"), FileFailure::kOther);
  ASSERT_TRUE(user != 0 || seteuid(user) == 0);
  EXPECT_EQ(folder_.Get("shown"), "shown");
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

TEST_F(HostFileSystemTest, AFileThatIsShortenedWhileItIsReadEndsBeforeItsLength) {
  folder_.Put("f", std::string(100000, 'x'));
  const auto opened = files_.OpenForRead("f");
  char buffer[1000];
  EXPECT_EQ(opened.file->Read(buffer, sizeof buffer), sizeof buffer);
  ASSERT_EQ(truncate("f", 2500), 0);  // a program that knows no locks
  EXPECT_TRUE(ProfileFile(codePage_, *opened.file).CutShort());
  EXPECT_EQ(opened.file->Read(buffer, sizeof buffer), 0U);
  EXPECT_EQ(opened.file->Length(), 100000U);
}

}  // namespace
}  // namespace velkor
