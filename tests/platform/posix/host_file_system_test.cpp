#include "platform/host_file_system.h"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "platform/host_file_system_case.h"
#include "platform/profile_file.h"
#include "platform/temporary_name.h"

namespace velkor {
namespace {

namespace fs = std::filesystem;

// How often this program has the file open.
int Descriptors(const std::string& path) {
  int count = 0;
  for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
    std::error_code gone;
    count += fs::read_symlink(entry.path(), gone) == path ? 1 : 0;
  }
  return count;
}

// Takes away what root may do, as long as it lives.
class WithoutRights {
 public:
  WithoutRights() { EXPECT_EQ(seteuid(before_ == 0 ? 65534 : before_), 0); }
  ~WithoutRights() { EXPECT_EQ(seteuid(before_), 0); }
  WithoutRights(const WithoutRights&) = delete;
  WithoutRights& operator=(const WithoutRights&) = delete;

 private:
  const uid_t before_ = geteuid();
};

using HostFileSystemTest = testing::HostFileSystemCase;
using testing::Content;

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

TEST_F(HostFileSystemTest, WhatTheUserProtectedStaysAndIsNotMissing) {
  folder_.Put("old", "old");
  folder_.Put("next", "new");
  folder_.Put("closed/file", "");
  ASSERT_EQ(chmod(".", 0777), 0);
  ASSERT_EQ(chmod("old", 0444), 0);
  ASSERT_EQ(chmod("closed", 0), 0);
  {
    const WithoutRights user;
    EXPECT_EQ(WriteFailure("old"), FileFailure::kOther);
    EXPECT_EQ(files_.HowToWrite("old"), WayToWrite::kRefused);
    EXPECT_FALSE(files_.Replace("next", "old"));
    EXPECT_EQ(ReadFailure("closed/file"), FileFailure::kOther);
  }
  ASSERT_EQ(chmod("closed", 0755), 0);
  ASSERT_EQ(chmod("old", 0), 0);
  {
    const WithoutRights user;
    EXPECT_EQ(ReadFailure("old"), FileFailure::kOther);
    EXPECT_EQ(files_.OpenWhenFree("old").failure, FileFailure::kOther);
  }
  ASSERT_EQ(chmod("old", 0644), 0);
  EXPECT_EQ(folder_.Get("old"), "old");
}

TEST_F(HostFileSystemTest, ALockThatPassesIsWaitedFor) {
  folder_.Put("old", "old");
  folder_.Put("next", "new");
  auto writer = files_.OpenForWrite("old");
  EXPECT_EQ(files_.OpenWhenFree("old").failure, FileFailure::kOther);
  std::thread release([&] {
    while (Descriptors(folder_ / "old") < 2) {
      std::this_thread::yield();
    }
    writer.file.reset();
  });
  EXPECT_TRUE(patient_.OpenWhenFree("old").file);
  release.join();

  writer = files_.OpenForWrite("old");
  int asked = 0;
  const auto giveUp = [&asked] { return ++asked % 3 == 0; };
  EXPECT_EQ(endless_.OpenWhenFree("old", giveUp).failure, FileFailure::kOther);
  EXPECT_FALSE(endless_.Replace("next", "old", {}, giveUp));
  EXPECT_EQ(folder_.Get("next"), "new");
}

// Another program puts its file there between the moment in which the old one is opened and that
// in which it can be held.
TEST_F(HostFileSystemTest, AFileThatIsNoLongerAtItsPathIsNotTheOneThatIsReplaced) {
  for (const bool isThere : {true, false}) {
    folder_.Put("old", "old");
    folder_.Put("next", "new");
    folder_.Put("another", "another's");
    auto reader = files_.OpenForRead("old");
    std::vector<std::string> asked;
    std::thread replacing([&] {
      patient_.Replace("next", "old", [&](InputFile* old) {
        asked.push_back(old != nullptr ? Content(*old) : "none");
        return false;
      });
    });
    while (Descriptors(folder_ / "old") < 2) {
      std::this_thread::yield();
    }
    if (isThere) {
      fs::rename("another", "old");
    } else {
      fs::remove("old");
    }
    reader.file.reset();
    replacing.join();
    EXPECT_EQ(asked, std::vector<std::string>{isThere ? "another's" : "none"});
  }
}

TEST_F(HostFileSystemTest, OnlyARegularFileBesideIsReplaced) {
  folder_.Put("file", "pipe");
  fs::create_symlink("file", "link");
  fs::create_symlink("/proc/version", "away");
  ASSERT_EQ(mkfifo("fifo", 0666), 0);
  const std::vector<std::pair<std::string, WayToWrite>> ways = {
      {"file", WayToWrite::kBeside},      {"link", WayToWrite::kBeside},
      {"missing", WayToWrite::kDirectly}, {"away", WayToWrite::kDirectly},
      {"fifo", WayToWrite::kDirectly},    {"/dev/null", WayToWrite::kDirectly}};
  for (const auto& [path, way] : ways) {
    EXPECT_EQ(files_.HowToWrite(path), way) << path;
  }
  const auto reader = files_.OpenForRead("file");
  EXPECT_EQ(files_.HowToWrite("file"), WayToWrite::kRefused);
  const int end = open("fifo", O_RDONLY | O_NONBLOCK);
  const auto pipe = files_.OpenForWrite("fifo");
  ASSERT_TRUE(pipe.file);
  EXPECT_TRUE(pipe.file->Write("seen"));
  char seen[5] = {};
  EXPECT_EQ(read(end, seen, 4), 4);
  EXPECT_STREQ(seen, "seen");
  close(end);
}

TEST_F(HostFileSystemTest, LinksOutOfTheFolderAreKnown) {
  fs::create_directories("project/sub");
  folder_.Put("outside", "");
  folder_.Put("project/file", "");
  fs::create_symlink("project", "alias");
  fs::create_symlink("file", "project/inside");
  fs::create_symlink("sub/new", "project/dangling");
  fs::create_symlink("../outside", "project/out");
  fs::create_symlink("out", "project/chain");
  fs::create_symlink("../project/sub/../../outside", "project/sub/further");
  for (const char* inside :
       {"project/file", "project/inside", "project/dangling", "alias/inside", "project/missing"}) {
    EXPECT_FALSE(files_.LeadsOutOfFolder(inside)) << inside;
  }
  for (const char* out : {"project/out", "project/chain", "alias/out", "project/sub/further"}) {
    EXPECT_TRUE(files_.LeadsOutOfFolder(out)) << out;
  }
}

TEST_F(HostFileSystemTest, WhatAKilledProgramLeftIsTakenAwayAndNothingElse) {
  const std::string tail = ".0123456789abcdef.tmp";
  const std::string longName(220, 'n');
  for (const std::string& left : {"f" + tail, "f.bak12" + tail, longName.substr(0, 200) + tail}) {
    folder_.Put(left, "");
  }
  const std::vector<std::string> others = {"f",
                                           "f.tmp",
                                           "ff" + tail,
                                           "f.x" + tail,
                                           "g" + tail,
                                           "nn" + tail,  // too short to be what is left of longName
                                           "f.0123456789abcdeF.tmp",
                                           "f" + TemporaryTail()};
  for (const std::string& other : others) {
    folder_.Put(other, "");
  }
  const auto running = files_.OpenForWrite(others.back());
  fs::create_symlink("f", "f.aaaaaaaaaaaaaaaa.tmp");
  files_.RemoveAbandoned("f");
  files_.RemoveAbandoned(longName);
  for (const std::string& other : others) {
    EXPECT_TRUE(fs::exists(other)) << other;
  }
  const auto left = std::distance(fs::directory_iterator("."), fs::directory_iterator());
  EXPECT_EQ(static_cast<size_t>(left), others.size() + 1);
  EXPECT_NE(TemporaryTail(), TemporaryTail());
}

TEST_F(HostFileSystemTest, PermissionsAreTakenFromAnother) {
  folder_.Put("secret", "");
  folder_.Put("copy", "");
  ASSERT_EQ(chmod("secret", 0600), 0);
  EXPECT_TRUE(files_.TakePermissions("copy", "secret"));
  EXPECT_EQ(fs::status("copy").permissions(), fs::perms(0600));
  EXPECT_FALSE(files_.TakePermissions("copy", "missing"));
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
