#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <rapidjson/document.h>
#include <set>
#include <sstream>
#include <utility>

#include "program.h"
#include "scratch_folder.h"

namespace velkor {
namespace {

using testing::Program;
using testing::ProgramRun;
using testing::ReadFile;
using testing::ScratchFolder;
namespace fs = std::filesystem;

constexpr const char* kGraph =
    "graph: { title: \"a.c\"\n"
    "node: { title: \"main\" label: \"main\\na.c:1:5\\n16 bytes (static)\\n0 dynamic objects\" }\n"
    "node: { title: \"rec\" label: \"rec\\na.c:2:5\\n8 bytes (static)\\n0 dynamic objects\" }\n"
    "edge: { sourcename: \"main\" targetname: \"rec\" label: \"a.c:1:9\" }\n"
    "edge: { sourcename: \"rec\" targetname: \"rec\" label: \"a.c:2:9\" }\n"
    "}\n";

class GccFolder : public ::testing::Test {
 protected:
  GccFolder() { folder_.Put("build/a.ci", kGraph); }

  ProgramRun Run(std::vector<std::string> arguments) const {
    return Program(std::move(arguments)).In(folder_.Root()).Run();
  }
  std::string Saved() const { return ReadFile(folder_.Path("velkor.psg")); }
  // A number of a function in the JSON of `analyze`; -1: null.
  int Number(const std::string& input, const std::string& function, const char* key) const {
    rapidjson::Document json;
    json.Parse(Run({"analyze", input, "--format", "json"}).out.c_str());
    for (const auto& each : json["functions"].GetArray()) {
      if (each["specName"].GetString() == function) {
        return each[key].IsNull() ? -1 : each[key].GetInt();
      }
    }
    ADD_FAILURE() << function;
    return -2;
  }

  ScratchFolder folder_;
};

TEST_F(GccFolder, KeepsStatementsBesideAVelkorTomlWhoseFilesWin) {
  folder_.Put("velkor.toml", "input = \"build\"\nload = [\"one.txt\", \"two.txt\"]\n");
  folder_.Put("one.txt", "# depths\nrec, RECTIME=9\n");
  folder_.Put("two.txt", "rec, RECTIME=3\n");
  folder_.Put("velkor.psg", "rec, RECTIME=7\r\n");
  EXPECT_EQ(Number("velkor.toml", "rec", "depth"), 3);
  EXPECT_EQ(Number("velkor.toml", "main", "bound"), 16 + 3 * 8);

  for (const std::vector<std::string>& command :
       {std::vector<std::string>{"adjust", "velkor.toml", "rec", "--margin", "1"},
        {"reset", "velkor.toml", "rec"}}) {
    const ProgramRun refused = Run(command);
    EXPECT_EQ(refused.status, 2);
    EXPECT_NE(refused.err.find("W9468 The function (rec) is stated in " + folder_.Path("two.txt") +
                               ", line 1."),
              std::string::npos)
        << refused.err;
  }
  EXPECT_EQ(Saved(), "rec, RECTIME=7\r\n");
  EXPECT_EQ(Run({"adjust", "velkor.toml", "main", "--margin", "4"}).status, 0);
  EXPECT_EQ(Saved(), "main, ADD=4\r\nrec, RECTIME=7\r\n") << "the user's own is kept";
  const ProgramRun reset = Run({"reset", "velkor.toml", "--all"});
  EXPECT_EQ(reset.status, 0);
  EXPECT_NE(reset.err.find("two.txt:1: Function (rec) stays as it is stated here"),
            std::string::npos)
      << reset.err;
  EXPECT_EQ(Saved(), "rec, RECTIME=7\r\n");
  folder_.Put("mine.txt", "rec, RECTIME=5\nmain, ADD=x\n");
  EXPECT_EQ(Run({"load", "velkor.toml", "mine.txt", "--on-error", "abort"}).status, 1);
  folder_.Put("mine.txt", "rec, RECTIME=5\n");
  const ProgramRun refused = Run({"load", "velkor.toml", "mine.txt"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_NE(refused.err.find("W9468"), std::string::npos) << refused.err;
  EXPECT_EQ(Saved(), "rec, RECTIME=7\r\n");
  EXPECT_EQ(Run({"analyze", "velkor.toml", "--load", folder_.Path("mine.txt")}).status, 0);
  EXPECT_EQ(Number("velkor.toml", "rec", "depth"), 3);

  // Neither is a line that names nothing lost under it.
  folder_.Put("velkor.psg", "rec, CALL=gone\r\n");
  EXPECT_EQ(Run({"adjust", "velkor.toml", "main", "--margin", "4"}).status, 0);
  EXPECT_TRUE(Saved().ends_with("\r\nrec, CALL=gone\r\n")) << Saved();
  folder_.Put("velkor.psg", "main, CALL=lost\r\nrec, CALL=gone\r\n");
  const std::string err = Run({"reset", "velkor.toml", "main"}).err;
  EXPECT_NE(err.find("psg:2: Function (gone) is not found"), std::string::npos) << err;
  EXPECT_EQ(err.find("(lost)"), std::string::npos) << err;

  // Of what only a file of the input states, nothing is kept.
  fs::remove(folder_.Path("velkor.psg"));
  EXPECT_EQ(Run({"reset", "velkor.toml", "--all"}).status, 0);
  EXPECT_FALSE(fs::exists(folder_.Path("velkor.psg")));
  EXPECT_EQ(Run({"adjust", "velkor.toml", "main", "--margin", "4"}).status, 0);
  EXPECT_EQ(Saved(), "main, ADD=4\r\n");
}

TEST_F(GccFolder, WritesOverNothingThatItIsMadeFrom) {
  folder_.Put("velkor.toml", "input = \"build\"\nelf = \"fw\"\nload = [\"one.txt\"]\n");
  folder_.Put("one.txt", "rec, RECTIME=3\n");
  for (const char* file : {"velkor.toml", "one.txt", "fw", "build/a.ci", "build/a.o"}) {
    if (!fs::exists(folder_.Path(file))) {
      folder_.Put(file, "x\n");
    }
    const std::string before = ReadFile(folder_.Path(file));
    const ProgramRun run = Run({"save", "velkor.toml", "--output", file});
    EXPECT_EQ(run.status, 4) << file << run.err;
    EXPECT_NE(run.err.find("W9402"), std::string::npos) << run.err;
    EXPECT_EQ(ReadFile(folder_.Path(file)), before);
  }
}

TEST_F(GccFolder, SaysWhyItRefuses) {
  folder_.Put("f.txt", "main, ADD=1\n");
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"adjust", "build", "main", "--margin", "4"},
        {"load", "build", "f.txt"},
        {"reset", "build", "--all"}}) {
    const ProgramRun refused = Run(arguments);
    EXPECT_EQ(refused.status, 2) << arguments.front();
    EXPECT_NE(refused.err.find("W9469"), std::string::npos) << refused.err;
  }
  folder_.Put("none/a.c", "");
  EXPECT_EQ(Run({"analyze", "none"}).status, 3);
  folder_.Put("wrong.toml", "input = \"build\"\n\nexclud = \"x\"\n");
  const ProgramRun wrong = Run({"analyze", "wrong.toml"});
  EXPECT_EQ(wrong.status, 3);
  EXPECT_NE(wrong.err.find("line 3, column 1: unknown key \"exclud\"; near it: \"exclude\""),
            std::string::npos)
      << wrong.err;
}

// What an assembler, a library of objects and a cache of compilations leave is ordinary.
TEST_F(GccFolder, EndsWithOneWhereSomethingWasNotRead) {
  EXPECT_EQ(Run({"analyze", "build"}).status, 0);
  folder_.Put("s.s", ".text\n.globl start\nstart:\nnop\n");
  folder_.Put("lib.c", "int help(int x) { return x; }\n");
  folder_.Put("c.c", "int help(int); int c(void) { return help(1) + 1; }\n");
  const std::string compile = "cd " + folder_.Path("build") +
                              " && gcc -c ../s.s && gcc -c ../lib.c -o ../lib.o && "
                              "ar rc libhelp.a ../lib.o && CCACHE_DIR=../cache "
                              "$(command -v ccache) gcc -fcallgraph-info=su,da -c ../c.c";
  ASSERT_EQ(std::system(compile.c_str()), 0);  // NOLINT(concurrency-mt-unsafe)
  const ProgramRun ordinary = Run({"analyze", "build"});
  EXPECT_EQ(ordinary.status, 0);
  EXPECT_NE(ordinary.err.find("s.o: The object is from an assembler"), std::string::npos)
      << ordinary.err;
  EXPECT_EQ(Number("build", "c", "bound"), -1) << "the library is not known";

  // A hit of an older cache brings the object alone.
  fs::remove(folder_.Path("build/c.ci"));
  const ProgramRun lacking = Run({"analyze", "build"});
  EXPECT_EQ(lacking.status, 1);
  EXPECT_NE(lacking.err.find("c.o: The object has no call graph file"), std::string::npos)
      << lacking.err;
  EXPECT_NE(lacking.err.find("CCACHE_DISABLE=1"), std::string::npos);
  fs::remove(folder_.Path("build/c.o"));
  folder_.Put("build/b.ci", "graph: { title: \"b.c\"\n");
  const ProgramRun cut = Run({"analyze", "build"});
  EXPECT_EQ(cut.status, 1);
  EXPECT_NE(cut.err.find("b.ci:1: The call graph is not whole"), std::string::npos) << cut.err;
  EXPECT_EQ(Number("build", "rec", "frameSize"), 8) << "the rest is analysed";
}

TEST_F(GccFolder, BoundsTheExample) {
  const fs::path example = fs::path(VELKOR_SOURCE_DIR) / "examples/gcc";
  for (const auto& file : fs::directory_iterator(example)) {
    if (file.is_regular_file()) {
      folder_.Put("example/" + file.path().filename().string(), ReadFile(file.path()));
    }
  }
  const std::string compile =
      "cd " + folder_.Path("example") +
      " && mkdir build && for s in main parser commands; do gcc -Os -fcallgraph-info=su,da -c $s.c "
      "-o build/$s.o || exit 1; done";
  ASSERT_EQ(std::system(compile.c_str()), 0);  // NOLINT(concurrency-mt-unsafe)
  EXPECT_EQ(Number("example/build", "main", "bound"), -1);
  EXPECT_GT(Number("example/velkor.toml", "main", "bound"), 62 * 16);
  const ProgramRun passed = Run({"check", "example/velkor.toml"});
  EXPECT_EQ(passed.status, 0) << passed.out;
  EXPECT_NE(passed.out.find("1 stack, 0 errors, 0 warnings: passed"), passed.out.npos)
      << passed.out;
  std::string small = ReadFile(folder_.Path("example/velkor.toml"));
  small.replace(small.find("16384"), 5, "1000");
  folder_.Put("example/velkor.toml", small);
  const ProgramRun failed = Run({"check", "example/velkor.toml"});
  EXPECT_EQ(failed.status, 5) << failed.out;
  EXPECT_TRUE(failed.out.starts_with("parser.c:22: error: stack main needs ")) << failed.out;
}

// The functions that a table of statements is about.
std::set<std::string> NamesOfTable(const fs::path& path) {
  std::set<std::string> names;
  std::istringstream lines(ReadFile(path));
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty() && line[0] != '#') {
      names.insert(line.substr(0, line.find(',')));
    }
  }
  return names;
}

TEST_F(GccFolder, TakesATableOfStatementsOnALibraryWhereItIsNamed) {
  const fs::path sources = VELKOR_SOURCE_DIR;
  std::set<std::string> notShown = NamesOfTable(sources / "src/resources/statements/newlib.txt");
  notShown.erase("_vfprintf_r");  // another name of _vfiprintf_r
  for (const std::string library : {"", "--specs=nano.specs -u _printf_float -u _scanf_float "}) {
    SCOPED_TRACE(library);
    folder_.Put("fw/velkor.toml", "input = \"build\"\nelf = \"build/prog\"\n");
    fs::create_directories(folder_.Path("fw/build"));
    const std::string compile =
        "cd " + folder_.Path("fw/build") +
        " && arm-none-eabi-gcc -Os -mcpu=cortex-m4 -mthumb -fcallgraph-info=su,da " +
        (sources / "tests/readers/gcc/code/newlib_samples.c").string() + " " + library +
        "--specs=nosys.specs -w -o prog 2>messages";
    if (std::system(compile.c_str()) != 0) {  // NOLINT(concurrency-mt-unsafe)
      GTEST_SKIP() << "cannot be compiled here: " << ReadFile(folder_.Path("fw/build/messages"));
    }
    EXPECT_EQ(Number("fw/velkor.toml", "main", "bound"), -1);
    folder_.Put("fw/velkor.toml",
                "input = \"build\"\nelf = \"build/prog\"\nload = \"velkor:newlib\"\n");
    const ProgramRun run = Run({"analyze", "fw/velkor.toml", "--format", "json"});
    EXPECT_EQ(run.err.find("velkor:newlib:"), std::string::npos) << run.err;
    EXPECT_GT(Number("fw/velkor.toml", "main", "bound"), 700);
    rapidjson::Document json;
    json.Parse(run.out.c_str());
    for (const auto& each : json["functions"].GetArray()) {
      const std::string name = each["name"].GetString();
      if (each["adjusted"].GetBool()) {
        notShown.erase(name.substr(0, name.find('.')));
      }
    }
  }
  EXPECT_EQ(notShown, std::set<std::string>()) << "statements that no program shows";

  const ProgramRun frames = Run({"analyze", "fw/velkor.toml", "--function", "__aeabi_cdrcmple"});
  EXPECT_NE(
      frames.out.find("Its instructions use 0 bytes, its call frame information 8: the largest "
                      "counts.\n"),
      std::string::npos)
      << frames.out;

  // What the user states wins, wherever it stands, and is kept alone.
  folder_.Put("fw/velkor.psg", "_fwalk, ADD=7\r\n");
  EXPECT_EQ(Number("fw/velkor.toml", "_fwalk", "margin"), 7);
  EXPECT_EQ(Run({"adjust", "fw/velkor.toml", "main", "--margin", "4"}).status, 0);
  EXPECT_EQ(ReadFile(folder_.Path("fw/velkor.psg")), "main, ADD=4\r\n_fwalk, ADD=7\r\n");

  folder_.Put("fw/velkor.toml", "input = \"build\"\nload = [\"a\",\n\"velkor:oldlib\"]\n");
  const ProgramRun wrong = Run({"analyze", "fw/velkor.toml"});
  EXPECT_EQ(wrong.status, 3);
  EXPECT_NE(wrong.err.find("line 3, column 1: there is no table of statements \"velkor:oldlib\""),
            std::string::npos)
      << wrong.err;
}

// The board's library of the example, with lines that bring the program to its depth.
constexpr const char* kBoard = R"c(
static const char* const lines[] = {BRACKETS, "1+2*(3+4)",
                                    "!p7", "!s9", "!x1", ""};
static int next;
int shown;
int read_line(char* line, int size) {
  const char* from = lines[next++];
  int length = 0;
  for (; length < size - 1 && from[length] != 0; ++length)
    line[length] = from[length];
  line[length] = 0;
  return length;
}
void write_number(int number) {
  shown += number;
}
)c";

// Runs the program, and nothing, on a painted stack; prints the bytes that it takes.
constexpr const char* kPainter = R"(
#include <stdio.h>
#include <ucontext.h>
static unsigned char stack[65536] __attribute__((aligned(64)));
static ucontext_t back, there;
extern int program(void);
static void nothing(void) { __asm__ volatile(""); }
static void run(void) { program(); }
static int used(void (*function)(void)) {
  for (unsigned i = 0; i < sizeof stack; ++i) stack[i] = 0xA5;
  getcontext(&there);
  there.uc_stack.ss_sp = stack;
  there.uc_stack.ss_size = sizeof stack;
  there.uc_link = &back;
  makecontext(&there, function, 0);
  swapcontext(&back, &there);
  int free = 0;
  while (stack[free] == 0xA5) ++free;
  return sizeof stack - free;
}
int main(void) {
  used(nothing);
  int without = used(nothing) - (int)sizeof(void*);
  printf("%d\n", used(run) - without);
}
)";

// However it is compiled, the program takes no more than its bound, and most of it.
TEST_F(GccFolder, BoundsWhatAPaintedStackShows) {
  const std::string example = VELKOR_SOURCE_DIR "/examples/gcc/";
  folder_.Put("board.c", kBoard);
  folder_.Put("painter.c", kPainter);
  folder_.Put("velkor.toml", "input = \"build\"\nload = \"limits.txt\"\n");
  // At -O2 one function takes the others of the recursion into itself.
  for (const auto& [level, counted] :
       {std::pair<std::string, std::string>{"-O0", "parse_expression"},
        {"-Os", "parse_expression"},
        {"-O2", "parser.c#parse_factor"}}) {
    folder_.Put("limits.txt", counted + ", RECTIME=63\n" +
                                  "run_command, CALL=commands.c#command_show, "
                                  "CALL=commands.c#command_store\n");
    const std::string commands =
        "cd " + folder_.Root() + " && rm -rf build && mkdir build && for s in " + example +
        "main.c " + example + "parser.c " + example + "commands.c board.c; do gcc " + level +
        " -fcallgraph-info=su,da -Dmain=program '-DBRACKETS=\"" + std::string(62, '(') +
        "\"' -c $s -o build/$(basename $s .c).o || exit 1; done && "
        "gcc -O2 painter.c build/*.o -o painter && ./painter > used";
    ASSERT_EQ(std::system(commands.c_str()), 0);  // NOLINT(concurrency-mt-unsafe)
    const int used = std::stoi(ReadFile(folder_.Path("used")));
    const int bound = Number("velkor.toml", "program", "bound");
    EXPECT_LE(used, bound) << level;
    EXPECT_GT(used, bound * 3 / 4) << level;
  }
}

}  // namespace
}  // namespace velkor
