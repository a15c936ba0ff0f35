#include <array>
#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>
#include <regex>
#include <sys/wait.h>

#include "program.h"
#include "scratch_folder.h"

namespace velkor {
namespace {

using testing::ModuleText;
using testing::Program;
using testing::ProgramRun;
using testing::ProjectText;
using testing::ScratchFolder;

const std::vector<std::string> kCommands = {"analyze", "explain", "todo", "report",
                                            "diff",    "check",   "init", "chains",
                                            "adjust",  "reset",   "load", "save",
                                            "names"};

// A line for the shell: its status and what it prints.
std::pair<int, std::string> Shell(const std::string& line) {
  std::FILE* pipe = popen(("export LC_ALL=C.UTF-8; " + line).c_str(), "r");
  std::string out;
  std::array<char, 4096> buffer{};
  for (size_t read = 0; (read = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0;) {
    out.append(buffer.data(), read);
  }
  return {WEXITSTATUS(pclose(pipe)), out};
}

class Manners : public ::testing::Test {
 protected:
  Manners() {
    folder_.Put("main.asm",
                ModuleText("main.c", {{"main", "4", {"step", "driver"}}, {"step", "6", {}}}));
    project_ = folder_.Put("app.prj", ProjectText(".", {"main.c"}));
  }

  std::string Line(const std::string& arguments) const {
    return std::string(VELKOR_PROGRAM) + " " + arguments + " 2>" + folder_.Path("err");
  }

  ScratchFolder folder_;
  std::string project_;
};

TEST_F(Manners, WhatIsMisspeltIsNamedWithTheNearestWord) {
  const std::pair<std::vector<std::string>, std::string> wrong[] = {
      {{"analyse", project_}, "there is no command \"analyse\"; did you mean analyze?"},
      {{"anlayze", project_}, "there is no command \"anlayze\"; did you mean analyze?"},
      {{"xyzzy"}, "there is no command \"xyzzy\"."},
      {{"analyze", project_, "--formt", "csv"},
       "there is no option --formt; did you mean --format?"},
      {{"analyze", project_, "--formt=csv"}, "there is no option --formt; did you mean --format?"},
      {{"chains", project_, "main", "--al"}, "there is no option --al; did you mean --all?"},
      {{"analyze", project_, "--format", "jsn"},
       "--format: \"jsn\" is none of text, json, csv; did you mean json?"},
      {{"analyze", project_, "--on-error", "stop"},
       "--on-error: \"stop\" is none of abort, retry, ignore."},
      {{"diff", project_, project_, "--format", "csv"},
       "--format: \"csv\" is none of text, json, markdown."},
      {{"analyze", project_, "more"}, "\"more\" is one argument too many for analyze."},
      {{"adjust", project_, "main"},
       "adjust: state something: --margin, --depth, --callee or --no-callees."},
      {{"explain", project_}, "FUNCTION is required."},
      {{"explain", project_, "setp"}, "\"setp\" is no function of the project; near it: step."}};
  for (const auto& [arguments, message] : wrong) {
    const ProgramRun run = Program(arguments).Run();
    EXPECT_EQ(run.status, 2) << message;
    EXPECT_EQ(run.out, "") << message;
    EXPECT_TRUE(run.Says("velkor-cli: " + message)) << run.err;
  }
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("app.psg")));
}

TEST_F(Manners, HelpAndVersionWorkAtEveryLevel) {
  const std::string version = Program({"--version"}).Run().out;
  EXPECT_TRUE(std::regex_match(version, std::regex(R"(velkor [0-9.]+( \([0-9a-f]+(, changed)?\))?\n)"))) << version;
  const std::string help = Program({"--help"}).Run().out;
  for (const std::string& command : kCommands) {
    EXPECT_NE(help.find("\n  " + command), std::string::npos) << command;
    EXPECT_EQ(Program({command, "--version"}).Run().out, version) << command;
    const ProgramRun run = Program({command, "--help"}).Run();
    EXPECT_EQ(run.status, 0) << command;
    EXPECT_EQ(run.err, "") << command;
    EXPECT_NE(run.out.find("velkor-cli " + command), std::string::npos) << run.out;
    EXPECT_EQ(run.out.find("->"), std::string::npos) << "no numbers behind the words: " << run.out;
  }
}

TEST_F(Manners, QuietKeepsWarningsErrorsAndNotes) {
  folder_.Put("app.prj", ProjectText(".", {"main.c", "gone.c", "boot.asm"}));
  const ProgramRun run = Program({"analyze", project_, "-q"}).Run();
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err.find("Reading"), std::string::npos) << run.err;
  EXPECT_NE(run.err.find("W9431 "), std::string::npos) << run.err;
  EXPECT_NE(run.err.find("note: "), std::string::npos) << run.err;
  const ProgramRun json = Program({"analyze", project_, "--format", "json", "--quiet"}).Run();
  EXPECT_EQ(json.out, Program({"analyze", project_, "--format", "json"}).Run().out)
      << "the log of the analysis is the same";
}

TEST_F(Manners, ADashIsStandardInputOrOutput) {
  const ProgramRun loaded = Program({"analyze", project_, "--format", "csv", "--load", "-"})
                                .Input("[driver], ADD=100\n")
                                .Run();
  EXPECT_EQ(loaded.status, 0) << loaded.err;
  EXPECT_NE(loaded.out.find("main,104,4,"), std::string::npos) << loaded.out;
  EXPECT_EQ(Program({"load", project_, "-"}).Input("main, ADD=9\n").Run().status, 0);
  EXPECT_EQ(testing::ReadFile(folder_.Path("app.psg")), "main, ADD=9\r\n");
  const std::string json = Program({"analyze", project_, "--format", "json"}).Run().out;
  const ProgramRun compared = Program({"diff", "-", project_}).Input(json).Run();
  EXPECT_EQ(compared.out, "Stack: nothing changed (- → " + project_ + ")\n");

  const std::string file = folder_.Path("chains.txt");
  EXPECT_EQ(Program({"chains", project_, "main", "--all", "--output", file}).Run().status, 0);
  for (const std::vector<std::string>& output :
       std::vector<std::vector<std::string>>{{}, {"--output", "-"}, {"--output", "/dev/stdout"}}) {
    const ProgramRun chains = Program({"chains", project_, "main", "--all"}, output).Run();
    EXPECT_EQ(chains.status, 0) << chains.err;
    EXPECT_EQ(chains.out, testing::ReadFile(file));
  }
  EXPECT_EQ(Program({"save", project_, "--output", "-"}).Run().out, "main, ADD=9\r\n[driver]\r\n");
}

TEST_F(Manners, OutputsMayBePipesAndGrow) {
  const std::string csv = Program({"analyze", project_, "--format", "csv"}).Run().out;
  for (const std::string output : {"", " --output -", " --output /dev/stdout"}) {
    EXPECT_EQ(Shell(Line("analyze " + project_ + " --format csv" + output) + " | cat"),
              std::pair(0, csv));
    folder_.Put("out", "before\n");
    EXPECT_EQ(
        Shell(Line("analyze " + project_ + " --format csv" + output) + " >>" + folder_.Path("out"))
            .first,
        0);
    EXPECT_EQ(testing::ReadFile(folder_.Path("out")), "before\n" + csv) << output;
  }
  // A pipe with a name, and one that is closed before anything comes.
  const std::string fifo = folder_.Path("fifo");
  EXPECT_EQ(Shell("mkfifo " + fifo + "; cat " + fifo + " & sleep 0.3; " +
                  Line("analyze " + project_ + " --format csv --output " + fifo) + "; wait"),
            std::pair(0, csv));
  for (const std::string& arguments :
       {"analyze " + project_, "analyze " + project_ + " --format json", "todo " + project_,
        "chains " + project_ + " main", "report " + project_ + " --output -"}) {
    const auto [status, out] =
        Shell("(sleep 0.3; " + Line(arguments) + "; echo $? >" + folder_.Path("status") +
              ") | true; cat " + folder_.Path("status"));
    EXPECT_EQ(out, "0\n") << arguments << testing::ReadFile(folder_.Path("err"));
    EXPECT_EQ(testing::ReadFile(folder_.Path("err")).find("cannot write"), std::string::npos);
  }
}

TEST_F(Manners, ProgressIsDrawnOnATerminalThatMayBeDrawnOn) {
  const std::string project = testing::PutLongProject(folder_);
  const auto drawn = [&](const std::string& variable, const std::string& value, bool terminal,
                         int wait) {
    Program program({"analyze", project});
    program.With("TERM", "xterm").With(variable, value).KillAfter(std::chrono::milliseconds(wait));
    if (terminal) {
      program.ErrorsToTerminal();
    }
    return program.Run().err.find("\x1b[") != std::string::npos;
  };
  EXPECT_TRUE(drawn("NO_COLOR", "", true, 2500));
  EXPECT_FALSE(drawn("NO_COLOR", "", false, 1200));
  EXPECT_FALSE(drawn("NO_COLOR", "1", true, 1200));
  EXPECT_FALSE(drawn("TERM", "dumb", true, 1200));
  // What is done soon needs none.
  EXPECT_EQ(Program({"analyze", project_}).ErrorsToTerminal().Run().err.find('\x1b'),
            std::string::npos);
}

TEST_F(Manners, WhatIsNotThereIsNamed) {
  const ProgramRun missing = Program({"load", project_, folder_.Path("none.txt")}).Run();
  EXPECT_EQ(missing.status, 3);
  EXPECT_TRUE(missing.err.starts_with("W9400 ")) << missing.err;
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("app.psg")));

  folder_.Put("app.prj", ProjectText(".", {"gone.c"}));
  const std::string page = folder_.Path("page.html");
  for (const std::vector<std::string>& command :
       std::vector<std::vector<std::string>>{{"chains", project_, "main"},
                                             {"explain", project_, "main"},
                                             {"adjust", project_, "main", "--margin", "1"},
                                             {"reset", project_, "main"}}) {
    const ProgramRun run = Program(command).Run();
    EXPECT_EQ(run.status, 3) << command[0];
    EXPECT_EQ(run.out, "") << command[0];
    EXPECT_TRUE(run.Says("velkor-cli: no module was read: there are no functions.")) << run.err;
  }
  for (const std::vector<std::string>& command :
       std::vector<std::vector<std::string>>{{"analyze", project_},
                                             {"analyze", project_, "--chains"},
                                             {"todo", project_},
                                             {"report", project_, "--output", page}}) {
    EXPECT_EQ(Program(command).Run().status, 1) << command[0];
  }
}

TEST(Scripts, ExplainThemselves) {
  const std::string root = VELKOR_SOURCE_DIR;
  for (const std::string script : {"scripts/run", "scripts/test", "scripts/check", "scripts/fuzz",
                                   "scripts/coverage", "scripts/screenshot", "scripts/release",
                                   "scripts/test_packages", "bench/run"}) {
    for (const std::string help : {"--help", "-h"}) {
      const auto [status, out] = Shell("cd / && " + root + "/" + script + " " + help + " 2>&1");
      EXPECT_EQ(status, 0) << script << out;
      EXPECT_TRUE(out.starts_with(script)) << out;
      EXPECT_TRUE(out.ends_with(".\n")) << out;
    }
  }
}

// A user without the rights of root, on a machine that has nothing: text asks for no toolkit.
TEST(Scripts, SayWhatToInstallWhereTheyMayNot) {
  const auto [status, out] =
      Shell("cd " VELKOR_SOURCE_DIR
            " && bash -c 'id() { echo 1000; }; command() { false; }; dpkg-query() { :; }; "
            ". scripts/common.sh; install_missing' 2>&1");
  EXPECT_EQ(status, 1);
  EXPECT_NE(out.find("  apt-get install --no-install-recommends g++ "), std::string::npos) << out;
  EXPECT_EQ(out.find("qt6"), std::string::npos) << out;
}

// From another folder, with nothing left to install or to build.
TEST(Scripts, RunPassesOnWhatFollowsTheInput) {
  const ScratchFolder folder;
  const std::string root = VELKOR_SOURCE_DIR;
  folder.Put("bin/cmake", "#!/bin/sh\n");
  folder.Put("bin/dpkg-query", "#!/bin/sh\nprintf installed\n");
  folder.Put("in/main.asm", ModuleText("main.c", {{"main", "4", {}}, {"step", "6", {}}}));
  folder.Put("in/my app.prj", ProjectText(".", {"main.c"}));
  ASSERT_EQ(Shell("cd " + folder.Root() + " && chmod +x bin/* && cp -r " + root +
                  "/scripts . && mkdir -p build/release/bin && ln -s " VELKOR_PROGRAM
                  " build/release/bin/velkor-cli")
                .first,
            0);
  const auto run = [&folder](const std::string& arguments) {
    return Shell("cd " + folder.Path("in") + " && PATH=" + folder.Path("bin") +
                 ":$PATH DISPLAY= ../scripts/run " + arguments + " 2>/dev/null");
  };
  const std::string csv =
      Program({"analyze", folder.Path("in/my app.prj"), "--format", "csv"}).Run().out;
  EXPECT_EQ(run("'my app.prj' --format csv"), std::pair(0, csv));
  EXPECT_EQ(run("'my app.prj' --formt csv").first, 2);
  EXPECT_EQ(run("--version").second, Program({"--version"}).Run().out);
}

}  // namespace
}  // namespace velkor
