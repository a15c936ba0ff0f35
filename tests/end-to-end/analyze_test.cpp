#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <rapidjson/document.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "program.h"
#include "scratch_folder.h"

namespace velkor {
namespace {

using testing::ModuleText;
using testing::Program;
using testing::ProgramRun;
using testing::ProjectText;
using testing::ScratchFolder;

ProgramRun Json(const std::string& project) {
  return Program({"analyze", project, "--format", "json"}).Run();
}

rapidjson::Document Parsed(const ProgramRun& run) {
  rapidjson::Document document;
  document.Parse<rapidjson::kParseValidateEncodingFlag>(run.out.data(), run.out.size());
  EXPECT_FALSE(document.HasParseError()) << run.err << run.out.substr(0, 1000);
  return document;
}

int64_t CountLines(const std::string& text, const std::string& part) {
  int64_t count = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

void MakeSocket(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  ASSERT_LT(path.size(), sizeof address.sun_path);
  path.copy(address.sun_path, path.size());
  const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
  EXPECT_EQ(bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  close(descriptor);
}

TEST(BadInput, WhatCannotBeOpenedIsReportedAndTheRestIsRead) {
  const ScratchFolder folder;
  folder.Put("main.asm", ModuleText("main.c", {{"main", "4", {}}}));
  std::filesystem::create_directory(folder.Path("folder.asm"));
  folder.Put("empty.asm", "");
  folder.Put("noise.asm", std::string("\0\xFF\r\n\x1A$DGS", 9));
  ASSERT_EQ(mkfifo(folder.Path("pipe.asm").c_str(), 0600), 0);
  MakeSocket(folder.Path("socket.asm"));
  std::filesystem::create_symlink("/dev/zero", folder.Path("zero.asm"));
  std::string options = "[Options.CCTarn 0 folder.c]\nOutasmsrccmb0=folder.asm\\.\n";
  // The project file in the place of a module.
  options += "[Options.CCTarn 0 self.c]\nOutasmsrccmb0=app.prj\n";
  const std::vector<std::string> sources = {"folder.c", "self.c",   "empty.c", "noise.c",
                                            "pipe.c",   "socket.c", "zero.c",  "main.c"};
  const std::string project = folder.Put("app.prj", ProjectText(".", sources, options));
  const ProgramRun run = Json(project);
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(CountLines(run.err, " Reading aborted.\n"), static_cast<int64_t>(sources.size()) - 1)
      << run.err;
  const std::string kind = "W9432 Illegal format in assembler source module file (";
  EXPECT_TRUE(run.Says(kind + folder.Path("app.prj") + ":line 1). Check the file.")) << run.err;
  EXPECT_TRUE(run.Says(kind + folder.Path("empty.asm") + "). Check the file.")) << run.err;
  for (const char* name : {"pipe.asm", "socket.asm", "zero.asm"}) {
    EXPECT_TRUE(run.Says("W9401 Cannot open file to read (" + folder.Path(name) +
                         "). Check that the file is readable."))
        << run.err;
  }
  EXPECT_EQ(Parsed(run)["functions"].Size(), 1U);
  // In the place of the stk system file they are neither read nor replaced.
  for (const char* name : {"pipe.asm", "socket.asm", "zero.asm", "folder.asm"}) {
    std::filesystem::remove(folder.Path("app.psg"));
    std::filesystem::rename(folder.Path(name), folder.Path("app.psg"));
    const ProgramRun saved = Program({"adjust", project, "main", "--margin", "5"}).Run();
    EXPECT_EQ(saved.status, 4) << name;
    EXPECT_TRUE(saved.Says("W9429 Broken stk system file (" + folder.Path("app.psg") +
                           "). The file was ignored."))
        << saved.err;
    EXPECT_TRUE(saved.Says("W9402 Cannot open file to write (" + folder.Path("app.psg") +
                           "). Check that both the file and the folder are writable."))
        << saved.err;
    EXPECT_FALSE(
        std::filesystem::is_regular_file(std::filesystem::symlink_status(folder.Path("app.psg"))));
  }
}

TEST(BadInput, NamesOfAnyBytes) {
  const ScratchFolder folder;
  const std::string directives = "%s%n%lu%.0s";
  const std::string control = "a\x01\x1B[31m\x7F\rb";
  const std::string invalid = "\xC3\x29\xFF\xED\xA0\x80";
  const std::string null("c\0d", 3);
  folder.Put("main.asm", ModuleText("%s%n.c", {{"main", "4", {directives, control, invalid}},
                                               {directives, "6", {}},
                                               {control, "8", {}},
                                               {invalid, "10", {}},
                                               {null, "12", {null}}}));
  const std::string project = folder.Put("app.prj", ProjectText(".", {"main.c"}));
  const std::string limits = folder.Put(
      "limits.txt", directives + ", ADD=1\n" + null + ", ADD=2\n" + invalid + "x, ADD=3\n");
  const ProgramRun run = Program({"analyze", project, "--format", "json", "--load", limits}).Run();
  const rapidjson::Document document = Parsed(run);
  ASSERT_GE(document["functions"].Size(), 4U) << run.err;
  const auto name = [&document](rapidjson::SizeType i) {
    const auto& text = document["functions"][i]["specName"];
    return std::string(text.GetString(), text.GetStringLength());
  };
  EXPECT_EQ(name(1), directives);
  EXPECT_EQ(name(2), control);
  EXPECT_EQ(name(3), "\uFFFD)\uFFFD\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(document["functions"][0]["totalStackSize"].GetInt(), 14);
  EXPECT_TRUE(run.Says("Stack size specification of " + directives +
                       " adjusted. Additional margin is set to 1."))
      << run.err;
  const std::string text = Program({"analyze", project}).Run().out;
  EXPECT_EQ(text.find('\x1B'), std::string::npos) << "a name gives the terminal no orders";
  EXPECT_EQ(text.find('\r'), std::string::npos);
}

TEST(Paths, MappingsLeadDriveLettersToFolders) {
  const ScratchFolder folder;
  folder.Put("far/main.asm", ModuleText("D:\\far\\main.c", {{"main", "4", {}}}));
  folder.Put("wrong/main.asm", "");
  const std::string project = folder.Put("near/app.prj", ProjectText("D:\\far", {"main.c"}));
  const std::string right = "d:\\FAR=" + folder.Path("far");
  const std::string wrong = "D:\\far=" + folder.Path("wrong");

  const ProgramRun byOption =
      Program({"analyze", project, "--map", wrong, "--map", right}).With("VELKOR_MAP", wrong).Run();
  EXPECT_EQ(byOption.status, 0) << byOption.err;
  EXPECT_TRUE(byOption.Says("D:\\far\\main.asm Reading completed.")) << byOption.err;
  const ProgramRun byEnvironment =
      Program({"analyze", project}).With("VELKOR_MAP", "E:\\x=/x;" + right).Run();
  EXPECT_EQ(byEnvironment.status, 0) << byEnvironment.err;
  EXPECT_EQ(Program({"analyze", project}).Run().status, 1);
}

TEST(Paths, TextsOfCodePage932ReachTheReaderAsUtf8) {
  const ScratchFolder folder;
  // In this set the second byte of a character can be "\": it separates nothing.
  const std::string name = "\x83\x5C";
  folder.Put("main.asm", ModuleText("C:\\" + name + "\\main.c",
                                    {{"main", "4", {name, "x"}}, {name, "6", {}, true}}));
  const std::string project = folder.Put("app.prj", ProjectText("C:\\" + name, {"main.c"}));
  const ProgramRun run =
      Program({"analyze", project, "--codepage", "932", "--format", "csv"}).Run();
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out,
            "name,total,frame,adjustment,file,top-level,complete,bound,state,known\n"
            "main,10,4,,C:\\ソ\\main.c,yes,no,,unbounded,10\n"
            "main.c#ソ,6,6,,C:\\ソ\\main.c,no,yes,6,bounded,6\n"
            "[x],?,?,,,no,no,,unbounded,0\n");
  EXPECT_TRUE(run.Says("C:\\ソ\\main.asm Reading completed.")) << run.err;

  // This set has no "≥".
  const ProgramRun text = Program({"analyze", project, "--codepage", "932"}).Run();
  EXPECT_NE(text.out.find(">=10"), std::string::npos) << text.out;
  EXPECT_EQ(text.out.find("≥"), std::string::npos) << text.out;
}

// A folder of the host's characters with a project of code page 932, on a UTF-8 terminal.
TEST(Paths, FoldersOfTheHostAreNotSteppedInTheCodePageOfTheProject) {
  const std::string here = "日本語";
  const std::string stated = "\x93\xFA\x96\x7B\x8C\xEA";
  const ScratchFolder folder;
  const auto analyze = [&](const std::string& project, const std::vector<std::string>& more) {
    return Program({"analyze", project, "--codepage", "932", "--format", "csv"}, more)
        .In(folder.Root())
        .Run();
  };
  const std::string module = ModuleText("main.c", {{"main", "4", {"memcpy"}}});
  folder.Put(here + "/表示.asm", module);
  folder.Put("tables " + here + "/lt.txt", "[memcpy], ADD=40\n");
  folder.Put("tables " + here + "/ltr.txt", "");
  folder.Put("café 表.txt", "main, ADD=100\n");
  const struct {
    std::string project;
    std::string directory;
    std::vector<std::string> more;
    std::string module;  // as it is shown
  } cases[] = {
      {here + "/app.prj", ".", {}, folder.Path(here) + "/表示.asm"},
      {here + "/app.prj", "C:\\" + stated, {}, "C:\\日本語\\表示.asm"},
      {"app.prj", stated, {}, folder.Path(here) + "/表示.asm"},
      {"app.prj", folder.Path(stated), {}, folder.Path(here) + "/表示.asm"},
      {"app.prj",
       "C:\\" + stated,
       {"--map", "C:\\日本語=" + folder.Path(here)},
       "C:\\日本語\\表示.asm"},
      {"日本é/app.prj", "..\\" + stated, {}, folder.Path(here) + "/表示.asm"},
  };
  for (const auto& one : cases) {
    folder.Put(one.project, ProjectText(one.directory, {"\x95\x5C\x8E\xA6.c"}, "Librarychk=1\n"));
    std::vector<std::string> more = one.more;
    more.insert(more.end(), {"--data", "tables " + here, "--load", "café 表.txt"});
    const ProgramRun run = analyze(one.project, more);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(run.Says(one.module + " Reading completed.")) << run.err;
    EXPECT_TRUE(run.Says(folder.Path("café 表.txt") + " Reading completed.")) << run.err;
    EXPECT_NE(run.out.find("main,144,4,100,"), std::string::npos) << run.out;
  }
  // What is written goes where it was named, and is there again.
  const std::string project = "日本é/app.prj";
  const ProgramRun adjusted =
      Program({"adjust", project, "main", "--margin", "7", "--codepage", "932"})
          .In(folder.Root())
          .Run();
  EXPECT_EQ(adjusted.status, 0) << adjusted.err;
  EXPECT_EQ(testing::ReadFile(folder.Path("日本é/app.psg")), "main, ADD=7\r\n");
  EXPECT_NE(analyze(project, {}).out.find(",4,7,"), std::string::npos);
}

TEST(Paths, OnlyWhatAProjectStatesIgnoresLetterCase) {
  const ScratchFolder folder;
  folder.Put("Main.asm", ModuleText("main.c", {{"main", "4", {}}}));
  folder.Put("other.asm", ModuleText("other.c", {{"other", "4", {}}}));
  const std::string project = folder.Put("app.prj", ProjectText(".", {"MAIN.c", "other.c"}));
  folder.Put("APP.psg", "main, ADD=1\n");
  const ProgramRun run = Program({"analyze", project, "--format", "csv"}).Run();
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("main,4,4,,"), std::string::npos) << run.out;
  EXPECT_EQ(Program({"analyze", folder.Path("APP.prj")}).Run().status, 3);
  // Which of two is meant, only the project can say.
  folder.Put("main.asm", ModuleText("main.c", {{"main", "40", {}}}));
  const ProgramRun two = Program({"analyze", project}).Run();
  EXPECT_EQ(two.status, 1);
  EXPECT_NE(two.err.find("W9431 "), std::string::npos) << two.err;
  EXPECT_NE(two.err.find(folder.Path("MAIN.asm")), std::string::npos) << two.err;
}

TEST(Paths, TheTableFilesAreBesideTheProgram) {
  const ScratchFolder folder;
  folder.Put("main.asm", ModuleText("main.c", {{"main", "4", {"memcpy"}}}));
  const std::string project = folder.Put("app.prj", ProjectText(".", {"main.c"}, "Librarychk=1\n"));
  const ProgramRun beside = Program({"analyze", project, "--format", "csv"}).Run();
  EXPECT_EQ(beside.status, 0) << beside.err;
  EXPECT_NE(beside.out.find("main,8,"), std::string::npos) << beside.out;
  const ProgramRun none = Program({"analyze", project, "--data", folder.Path("none")}).Run();
  EXPECT_EQ(none.status, 1);
  EXPECT_NE(none.err.find("W9427 "), std::string::npos) << none.err;
}

class Load : public ::testing::Test {
 protected:
  Load() {
    folder_.Put(
        "main.asm",
        ModuleText("main.c", {{"main", "4", {"f", "g"}}, {"f", "6", {}}, {"g", "8", {""}}}));
    project_ = folder_.Put("app.prj", ProjectText(".", {"main.c"}));
  }

  ProgramRun Csv(const std::vector<std::string>& more) const {
    return Program({"analyze", project_, "--format", "csv"}, more).Run();
  }

  ScratchFolder folder_;
  std::string project_;
};

TEST_F(Load, FilesApplyInTheirOrderAndChangeNothingOnDisk) {
  const std::string first = folder_.Put("first.txt", "g, ADD=100\nmain, ADD=1\n");
  const std::string second = folder_.Put("second.txt", "main, ADD=2\ng, CALL=f, ADD=0\n");
  const ProgramRun run = Csv({"--load", first, "--load", second});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out,
            "name,total,frame,adjustment,file,top-level,complete,bound,state,known\n"
            "main,20,4,2,main.c,yes,yes,20,bounded,20\n"
            "f,6,6,,main.c,no,yes,6,bounded,6\n"
            "g,14,8,0,main.c,no,yes,14,bounded,14\n");
  // Of the other commands too; what one of them writes for the user may hold what it states.
  const std::string chains = folder_.Path("chains.txt");
  const std::string saved = folder_.Path("saved.txt");
  for (const std::vector<std::string>& command :
       std::vector<std::vector<std::string>>{{"explain", project_, "main"},
                                             {"chains", project_, "main", "--output", chains},
                                             {"save", project_, "--output", saved}}) {
    EXPECT_EQ(Program(command, {"--load", first, "--load", second}).Run().status, 0) << command[0];
  }
  EXPECT_EQ(testing::ReadFile(chains), "main(20,4,+2)+--g&(14,8,+0)---f(6,6)\r\n");
  EXPECT_EQ(testing::ReadFile(saved), "main, ADD=2\r\ng, ADD=0, CALL=f\r\n");
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("app.psg")));
  // A line without callees leaves those that were stated before.
  EXPECT_NE(Csv({"--load", second, "--load", first}).out.find("main,119,4,1,"), std::string::npos);
}

TEST_F(Load, WhatIsOnlyInMemoryIsNeitherKeptWithTheProjectNorOverwritten) {
  const std::string kept = "main, ADD=1\r\n";
  const std::string stated = "g, ADD=100\n";
  folder_.Put("app.psg", kept);
  const std::string limits = folder_.Put("limits.txt", stated);
  for (const std::vector<std::string>& command :
       std::vector<std::vector<std::string>>{{"adjust", project_, "main", "--margin", "3"},
                                             {"reset", project_, "--all"},
                                             {"load", project_, limits}}) {
    const ProgramRun run = Program(command, {"--load", limits}).Run();
    EXPECT_EQ(run.status, 2) << command[0];
    EXPECT_NE(run.err.find("--load: applies a file in memory only"), std::string::npos) << run.err;
  }
  for (const std::vector<std::string>& command :
       std::vector<std::vector<std::string>>{{"chains", project_, "main"}, {"save", project_}}) {
    EXPECT_EQ(Program(command, {"--load", limits, "--output", limits}).Run().status, 4);
  }
  EXPECT_EQ(testing::ReadFile(folder_.Path("app.psg")), kept);
  EXPECT_EQ(testing::ReadFile(limits), stated);
}

TEST_F(Load, AFileThatAppliesToNothingIsNotRead) {
  folder_.Put("main.asm", ModuleText("main.c", {}));
  const ProgramRun run = Csv({"--load", "any.txt"});
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(run.Says("velkor-cli: any.txt is not read: the project has no functions."))
      << run.err;
}

TEST_F(Load, AWrongLineIsAnsweredAsTheCommandLineSays) {
  const std::string wrong = folder_.Put("wrong.txt", "f, ADD=10\nnone, ADD=1\nf;\nmain, ADD=3\n");
  const std::string unknown =
      "W9410 Unknown function name (none) in file (" + wrong +
      ":line 2). Only functions explicitly referred to in the project are allowed.";
  for (const std::string answer : {"ignore", "retry", ""}) {
    const ProgramRun run =
        answer.empty() ? Csv({"--load", wrong}) : Csv({"--load", wrong, "--on-error", answer});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.Says(unknown)) << run.err;
    EXPECT_TRUE(run.Says(wrong + " Reading completed."));
    EXPECT_NE(run.out.find("main,23,4,3,"), std::string::npos) << run.out;
  }
  const ProgramRun run = Csv({"--load", wrong, "--on-error", "abort"});
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(run.Says(unknown));
  EXPECT_TRUE(run.Says(wrong + " Reading aborted."));
  EXPECT_NE(run.out.find("main,12,4,,"), std::string::npos) << run.out;
}

}  // namespace
}  // namespace velkor
