#include <filesystem>
#include <fstream>
#include <sstream>

#include "readers/module_reading.h"

namespace velkor {
namespace {

using testing::FormatErrorAt;
using testing::kAborted;
using testing::ModuleReading;
using Names = std::vector<std::string>;

// The smallest module that calls a helper and a function.
const std::vector<std::string> kLines = {
    "; Tarn C Compiler V3.70 Assembler Source",
    "$DGS GLV_SYM, _main, 0, 0, 0, 0, 0, 02H",
    "$DGS GLV_SYM, _sub, 0, 0, 0, 0, 0, 02H",
    "@@DATA DSEG",
    "@@CODE CSEG",
    "_main:",
    "\tcallt [@@lsmul]",
    "\tcall !_sub",
    "; *** Code Information ***",
    "; $FILE C:\\p\\main.c",
    ";",
    "; $FUNC main()",
    "; CODE SIZE=12 bytes, 0, STACK_SIZE=4 bytes",
    "; $CALL sub()",
};

TEST(ModuleExample, NoLineCanBeMissed) {
  for (size_t without = 0; without <= kLines.size(); ++without) {
    SCOPED_TRACE(without);
    std::string text;
    for (size_t i = 1; i <= kLines.size(); ++i) {
      text += i == without ? "" : kLines[i - 1] + "\n";
    }
    ModuleReading reading;
    const bool whole = reading.Read(text);
    switch (without) {
      case 0: {
        EXPECT_EQ(reading.Log(), Names());
        EXPECT_EQ(reading.project.compilerInfo.version, 0x370U);
        const StkFunction& main = reading.Function("_main");
        EXPECT_EQ(main.flags, FN_DEFINED | FN_GLOBAL);
        EXPECT_EQ(main.file->name, "C:\\p\\main.c");
        EXPECT_EQ(main.frameSize, 4U);
        EXPECT_EQ(reading.CallNames("_main"), Names({"_@lsmul", "_sub"}));
        break;
      }
      case 1:
      case 12:
        EXPECT_FALSE(whole);
        EXPECT_EQ(reading.Log(), Names({FormatErrorAt(without == 1 ? 1 : 13), kAborted}));
        break;
      case 3:
        EXPECT_EQ(reading.CallNames("_main"), Names({"_@lsmul"}));
        EXPECT_TRUE(reading.Function("_main").Is(FN_INDIRECT_CALL));
        break;
      case 4:  // the CSEG line now only ends the symbols
      case 5:
      case 6:
      case 7:
        EXPECT_EQ(reading.CallNames("_main"), Names({"_sub"}));
        break;
      case 9:
      case 10:
      case 11:
      case 13:
        EXPECT_TRUE(whole);
        EXPECT_EQ(reading.functions.Count(), 0U);
        break;
      case 14:
        EXPECT_EQ(reading.CallNames("_main"), Names({"_@lsmul"}));
        break;
      default:  // _main is declared for nobody; the call stands in the block
        EXPECT_EQ(reading.CallNames("_main"), Names({"_@lsmul", "_sub"}));
    }
  }
}

// A real call graph: every module is read without a word, and gives what its block lists.
TEST(ModuleExample, ARealCallGraph) {
  const std::filesystem::path folder = std::string(VELKOR_SOURCE_DIR) + "/examples/lua";
  ModuleReading reading;
  size_t modules = 0;
  uint32_t listed = 0;
  for (const auto& file : std::filesystem::directory_iterator(folder)) {
    if (file.path().extension() != ".asm") {
      continue;
    }
    std::ifstream stream(file.path(), std::ios::binary);
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    EXPECT_TRUE(reading.Read(bytes.str())) << file.path();
    std::istringstream lines(bytes.str());
    for (std::string line; std::getline(lines, line);) {
      listed += line.find("STACK_SIZE=") != std::string::npos ? 1U : 0U;
    }
    ++modules;
  }
  EXPECT_GT(modules, 20U);
  EXPECT_EQ(reading.Log(), std::vector<std::string>());
  EXPECT_EQ(reading.functions.Count(), listed);
  EXPECT_EQ(reading.files.size(), modules);
}

}  // namespace
}  // namespace velkor
