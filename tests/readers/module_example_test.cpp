#include "readers/module_reading.h"

namespace velkor {
namespace {

using testing::FormatErrorAt;
using testing::kAborted;
using testing::ModuleReading;
using Names = std::vector<std::string>;

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

// The lines from first to last, counted from 1, without one of them.
std::string Lines(size_t first, size_t last, size_t without = 0) {
  std::string text;
  for (size_t i = first; i <= last; ++i) {
    text += i == without ? "" : kLines[i - 1] + "\n";
  }
  return text;
}

TEST(ModuleExample, EachLineAddsItsEffect) {
  for (size_t count = 1; count <= kLines.size(); ++count) {
    SCOPED_TRACE(count);
    ModuleReading reading;
    EXPECT_TRUE(reading.Read(Lines(1, count)));
    EXPECT_EQ(reading.Log(), Names());
    EXPECT_EQ(reading.project.compilerInfo.series, 1U);
    EXPECT_EQ(reading.project.compilerInfo.version, 0x370U);
    EXPECT_TRUE(reading.project.runtimeNames.Contains("@lsmul"));
    EXPECT_EQ(reading.files.size(), count >= 11 ? 1U : 0U);
    EXPECT_EQ(reading.functions.Count(), count >= 13 ? 1U : 0U);
    if (count < 13) {
      continue;
    }
    const StkFunction& main = reading.Function("_main");
    EXPECT_EQ(main.flags, FN_DEFINED | FN_GLOBAL);
    EXPECT_EQ(main.file->name, "C:\\p\\main.c");
    EXPECT_EQ(main.frameSize, 4U);
    EXPECT_EQ(reading.CallNames("_main"),
              count == 13 ? Names({"_@lsmul"}) : Names({"_@lsmul", "_sub"}));
  }
}

TEST(ModuleExample, NoLineCanBeMissed) {
  for (size_t without = 1; without <= kLines.size(); ++without) {
    SCOPED_TRACE(kLines[without - 1]);
    ModuleReading reading;
    const bool whole = reading.Read(Lines(1, kLines.size(), without));
    switch (without) {
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

}  // namespace
}  // namespace velkor
