#include "platform/host_file_system.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>
#include <windows.h>

#include "platform/host_file_system_case.h"
#include "platform/temporary_name.h"

namespace velkor {
namespace {

namespace fs = std::filesystem;

using HostFileSystemTest = testing::HostFileSystemCase;
using testing::Content;

TEST_F(HostFileSystemTest, TellsMissingFilesFromOtherFailures) {
  fs::create_directory("folder");
  folder_.Put("file", "");
  const std::pair<std::string, FileFailure> cases[] = {{"missing", FileFailure::kNotFound},
                                                       {"missing/x", FileFailure::kNotFound},
                                                       {"file/x", FileFailure::kNotFound},
                                                       {"a\"b", FileFailure::kNotFound},
                                                       {"\x95\x5C", FileFailure::kNotFound},
                                                       {{"file\0", 5}, FileFailure::kNotFound},
                                                       {"", FileFailure::kNotFound},
                                                       {"folder", FileFailure::kOther}};
  for (const auto& [path, failure] : cases) {
    EXPECT_EQ(ReadFailure(path), failure) << path;
    if (path != "missing") {
      EXPECT_EQ(WriteFailure(path), failure) << path;
    }
  }
  EXPECT_EQ(ReadFailure("NUL"), FileFailure::kOther);
  EXPECT_FALSE(fs::exists("missing"));
}

TEST_F(HostFileSystemTest, NamesOfAllLengthsAndLettersAreThoseOfTheHost) {
  const std::string name = "caf\xC3\xA9 \xE8\xA1\xA8 \xF0\x9F\x98\x80.txt";
  std::string path = folder_.Path();
  std::vector<std::wstring> folders;
  for (int i = 0; i < 4; ++i) {
    path += "\\" + std::string(60, 'd') + std::to_string(i);
    folders.push_back(L"\\\\?\\" + std::wstring(path.begin(), path.end()));
    ASSERT_NE(CreateDirectoryW(folders.back().c_str(), nullptr), 0);
  }
  const std::string file = path + "\\" + name;
  ASSERT_GT(file.size(), 260U);
  const auto written = files_.OpenForWrite(file);
  ASSERT_TRUE(written.file && written.file->Write("kept") && written.file->Close());
  EXPECT_EQ(Content(*files_.OpenForRead(file).file), "kept");
  const FolderListing listing = files_.ListFolder(path);
  ASSERT_TRUE(listing.isWhole && listing.entries.size() == 1);
  EXPECT_EQ(listing.entries[0].name, name);
  EXPECT_TRUE(files_.IsSameFile(file, path + "/../" + std::string(60, 'd') + "3/" + name));
  EXPECT_TRUE(files_.Replace(file, path + "\\new") && files_.Remove(path + "\\new"));
  EXPECT_FALSE(files_.Exists(file));
  for (; !folders.empty(); folders.pop_back()) {  // the library cannot
    EXPECT_NE(RemoveDirectoryW(folders.back().c_str()), 0);
  }
}

TEST_F(HostFileSystemTest, ReplaceRefusesWithoutATrace) {
  folder_.Put("old", "old");
  folder_.Put("next", "new");
  fs::create_directory("folder");
  {
    const auto reader = files_.OpenForRead("old");
    EXPECT_FALSE(files_.Replace("next", "old"));
    EXPECT_EQ(files_.HowToWrite("old"), WayToWrite::kRefused);
  }
  for (const char* to : {"folder", "missing/x", "NUL"}) {
    EXPECT_FALSE(files_.Replace("next", to)) << to;
  }
  EXPECT_FALSE(files_.Replace("missing", "old") || files_.Replace("folder", "unseen"));
  SetFileAttributesA("old", FILE_ATTRIBUTE_READONLY);
  if (!std::ofstream("old", std::ios::app)) {  // wine lets root write it
    EXPECT_FALSE(files_.Replace("next", "old"));
    EXPECT_EQ(files_.HowToWrite("old"), WayToWrite::kRefused);
    EXPECT_EQ(WriteFailure("old"), FileFailure::kOther);
  }
  EXPECT_EQ(ReadFailure("old"), FileFailure::kNone);
  SetFileAttributesA("old", FILE_ATTRIBUTE_NORMAL);
  EXPECT_EQ(folder_.Get("old") + folder_.Get("next"), "oldnew");

  EXPECT_EQ(files_.HowToWrite("old"), WayToWrite::kBeside);
  for (const char* path : {"missing", "folder", "NUL"}) {
    EXPECT_EQ(files_.HowToWrite(path), WayToWrite::kDirectly) << path;
  }
  SetFileAttributesA("old", FILE_ATTRIBUTE_HIDDEN);
  const auto writer = files_.OpenForWrite("next");
  EXPECT_TRUE(writer.file->Write("newer"));
  EXPECT_TRUE(files_.Replace("next", "old")) << "while it is still open";
  EXPECT_TRUE(writer.file->Close());
  EXPECT_EQ(folder_.Get("old"), "newer");
  EXPECT_NE(GetFileAttributesA("old") & FILE_ATTRIBUTE_HIDDEN, 0U);
}

TEST_F(HostFileSystemTest, WhatAKilledProgramLeftIsTakenAwayUnlessItIsHeld) {
  const std::string left = "f.0123456789abcdef.tmp";
  const std::string held = "f" + TemporaryTail();
  folder_.Put("f", "");
  folder_.Put(left, "");
  const auto running = files_.OpenForWrite(held);
  files_.RemoveAbandoned(folder_ / "f");
  EXPECT_TRUE(fs::exists("f") && fs::exists(held));
  EXPECT_FALSE(fs::exists(left));
}

TEST_F(HostFileSystemTest, ALockIsWaitedForAsLongAsNobodyGivesUp) {
  folder_.Put("old", "old");
  folder_.Put("next", "new");
  const auto writer = files_.OpenForWrite("old");
  int asked = 0;
  const auto giveUp = [&asked] { return ++asked % 3 == 0; };
  EXPECT_EQ(endless_.OpenWhenFree("old", giveUp).failure, FileFailure::kOther);
  EXPECT_FALSE(endless_.Replace("next", "old", {}, giveUp));
  EXPECT_EQ(asked, 6);
  EXPECT_EQ(folder_.Get("next"), "new");
}

}  // namespace
}  // namespace velkor
