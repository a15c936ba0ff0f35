#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "program.h"
#include "scratch_folder.h"

namespace velkor {
namespace {

namespace fs = std::filesystem;

using testing::ModuleText;
using testing::Program;
using testing::ProgramRun;
using testing::ProjectText;
using testing::ScratchFolder;

void MakeSocket(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  ASSERT_LT(path.size(), sizeof address.sun_path);
  path.copy(address.sun_path, path.size());
  const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
  EXPECT_EQ(bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  close(descriptor);
}

// What may stand where a file is expected, and is none. Reading some of these would never end,
// opening others would wait for a partner.
struct NoFile {
  const char* name;
  std::function<void(const std::string& path)> make;
  bool writable = false;
};

const NoFile kNoFiles[] = {
    {"fifo", [](const std::string& path) { EXPECT_EQ(mkfifo(path.c_str(), 0600), 0); }},
    {"zero", [](const std::string& path) { fs::create_symlink("/dev/zero", path); }, true},
    {"folder", [](const std::string& path) { fs::create_directory(path); }},
    {"socket", MakeSocket},
};

class HostileFiles : public ::testing::TestWithParam<NoFile> {
 protected:
  HostileFiles() {
    folder_.Put("main.asm", ModuleText("main.c", {{"main", "4", {"f", "far"}}, {"f", "6", {}}}));
    folder_.Put("data/ltr.txt", "");
    project_ = folder_.Put("app.prj", ProjectText(".", {"main.c"}));
  }
  std::string Make(const std::string& name) const {
    const std::string path = folder_.Path(name);
    fs::remove(path);
    GetParam().make(path);
    return path;
  }
  ProgramRun Analyse(std::vector<std::string> more = {}) const {
    std::vector<std::string> arguments = {"analyze", project_, "--format",
                                          "csv",     "--data", folder_.Path("data")};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return Program(arguments).Run();
  }
  static std::string NotReadable(const std::string& path) {
    return "W9401 Cannot open file to read (" + path + "). Check that the file is readable.";
  }
  static std::string NotWritable(const std::string& path) {
    return "W9402 Cannot open file to write (" + path +
           "). Check that both the file and the folder are writable.";
  }

  ScratchFolder folder_;
  std::string project_;
};

TEST_P(HostileFiles, AsAModuleLeavesTheOthers) {
  const std::string odd = Make("odd.asm");
  folder_.Put("app.prj", ProjectText(".", {"odd.c", "main.c"},
                                     "[Options.CCTarn 0 odd.c]\n"
                                     "Outasmsrccmb0=odd.asm\\.\n"));
  const ProgramRun run = Analyse();
  EXPECT_EQ(run.status, 1);
  const bool located = GetParam().name != std::string("folder");
  EXPECT_TRUE(!located || run.Says(NotReadable(odd))) << run.err;
  EXPECT_NE(run.err.find(" Reading aborted.\n"), std::string::npos) << run.err;
  EXPECT_NE(run.out.find("main,10,4,"), std::string::npos) << run.out;
}

TEST_P(HostileFiles, AsTheStkSystemFileIsIgnoredAndKept) {
  const std::string odd = Make("app.psg");
  const ProgramRun run = Analyse();
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(run.Says("W9429 Broken stk system file (" + odd + "). The file was ignored."))
      << run.err;
  const ProgramRun saved = Program({"adjust", project_, "f", "--margin", "5"}).Run();
  EXPECT_EQ(saved.status, 4);
  EXPECT_TRUE(saved.Says(NotWritable(odd))) << saved.err;
  const std::string margins = folder_.Put("margins.txt", "f, ADD=5\n");
  EXPECT_EQ(Program({"load", project_, margins}).Run().status, 4);
  EXPECT_FALSE(fs::is_regular_file(fs::symlink_status(odd)));
}

TEST_P(HostileFiles, AsAnOutputFileIsNotWritten) {
  if (GetParam().writable) {
    GTEST_SKIP() << "a device that takes everything";
  }
  const std::string odd = Make("odd.txt");
  for (const char* command : {"save", "chains"}) {
    std::vector<std::string> arguments = {command, project_, "--output", odd};
    if (command == std::string("chains")) {
      arguments.insert(arguments.begin() + 2, "main");
    }
    const ProgramRun run = Program(arguments).Run();
    EXPECT_EQ(run.status, 4);
    EXPECT_TRUE(run.Says(NotWritable(odd))) << run.err;
  }
}

INSTANTIATE_TEST_SUITE_P(, HostileFiles, ::testing::ValuesIn(kNoFiles),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace velkor
