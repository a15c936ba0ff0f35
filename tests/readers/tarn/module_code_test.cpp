#include "readers/tarn/module_reading.h"

namespace velkor {
namespace {

using testing::ModuleReading;
using testing::ModuleText;
using Names = std::vector<std::string>;

// The helpers that the function f is found to call when its module has this code.
Names HelpersIn(const std::string& code) {
  ModuleReading reading;
  ModuleText module;
  module.code = code;
  EXPECT_TRUE(reading.Read(module.All()));
  return reading.CallNames("_f");
}

// How a call is written, the tests of a line say; here is what counts as a helper.
TEST(ModuleCode, CallInstructions) {
  const std::string start = "D DSEG\nC CSEG\n_f:\n";
  EXPECT_EQ(HelpersIn(start + "\tcall !@@bcall\n"), Names{"_@bcall"});
  EXPECT_EQ(HelpersIn(start + "\tcallt [@@fmul]\n\tcallt [@@fadd]\n\tbr !_@fmul ; far\n"),
            (Names{"_@fmul", "_@fadd"}));
  for (const char* instruction : {"\tcall !_main", "\tcallt [@@unknownhelper]",
                                  "\tcallt [@@cprep2]", "\tcall !bs_Fnowhere"}) {
    EXPECT_EQ(HelpersIn(start + instruction + "\n"), Names()) << instruction;
  }
}

TEST(ModuleCode, SegmentsBoundTheCode) {
  const std::string call = "\tcallt [@@fmul]\n";
  const Names found{"_@fmul"};
  // Only the second segment directive can open code.
  EXPECT_EQ(HelpersIn("C CSEG\n_f:\n" + call), Names());
  EXPECT_EQ(HelpersIn("C CSEG\nC CSEG\n_f:\n" + call), found);
  EXPECT_EQ(HelpersIn("D DSEG\n_f:\n" + call), Names());
  EXPECT_EQ(HelpersIn("D DSEG\nC CSEG\n" + call + "_f:\n"), Names());
  // In lower case the word opens code but is no directive elsewhere.
  EXPECT_EQ(HelpersIn("cseg\nC CSEG\n_f:\n" + call), Names());
  EXPECT_EQ(HelpersIn("Bseg\ncseg\n_f:\n" + call), found);
  EXPECT_EQ(HelpersIn("D DSEG\nC CSEG\n_f:\n\tcseg\n" + call), found);
  // A directive leaves the function; a code segment waits for the next label.
  EXPECT_EQ(HelpersIn("D DSEG\nC CSEG\n_f:\nC Cseg\n" + call), Names());
  EXPECT_EQ(HelpersIn("D DSEG\nC CSEG\n_f:\nC CSEG\n_f:\n" + call), found);
  EXPECT_EQ(HelpersIn("D DSEG\nC CSEG\n_f:\nB BsEg\n_f:\n" + call), Names());
  EXPECT_EQ(HelpersIn("D DSEG\nC CSEG\nD DSEG\n_f:\n" + call), Names());
  EXPECT_EQ(HelpersIn("D DSEG\nC CSEG\nD DSEG CSEG\n_f:\n" + call), Names());
  EXPECT_EQ(HelpersIn("D DSEG\nC CSEG\nCSEG DSEG\n_f:\n" + call), found);
  EXPECT_EQ(HelpersIn("D DSEG\nC CSEG\n_f:\n;DSEG\na b DSEG\nDSEGX\n" + call), found);
}

TEST(ModuleCode, LabelsNameTheCaller) {
  const std::string start = "D DSEG\nC CSEG\n";
  const std::string call = "\tcallt [@@fmul]\n";
  const Names found{"_@fmul"};
  // Other labels leave the function's name in force.
  EXPECT_EQ(HelpersIn(start + "_f:\nL1:\n_@x:\n_:\n" + call), found);
  EXPECT_EQ(HelpersIn(start + "_f:\n_g:\n" + call), Names());
  // A directive that ends a code segment can carry a label, which opens code again.
  EXPECT_EQ(HelpersIn("D DSEG\nC CSEG\n_x DSEG :\n" + call + "_f:\n" + call), found);
}

TEST(ModuleCode, StubsHandOnTheirHelpers) {
  const std::string start = "D DSEG\nC CSEG\n";
  EXPECT_EQ(HelpersIn(start + "bs_Fg:\n\tbr !@@fadd\n\tcall !@@fmul\n_f:\n\tcall !bs_Fg ;\n"),
            (Names{"_@fadd", "_@fmul"}));
  EXPECT_EQ(HelpersIn(start + "bs_Sg:\n\tbr !@@fadd\n_f:\n\tbr !bs_Sg\n"), Names{"_@fadd"});
  // A stub further down has nothing to give yet.
  EXPECT_EQ(HelpersIn(start + "_f:\n\tcall !bs_Fg\nbs_Fg:\n\tcall !@@fmul\n"), Names());
}

TEST(ModuleCode, WithoutSymbolLinesNothingIsRead) {
  ModuleReading reading;
  ModuleText module;
  module.symbols = "; no debugging information\n";
  EXPECT_TRUE(reading.Read(module.All()));
  EXPECT_EQ(reading.functions.Count(), 0U);
  EXPECT_EQ(reading.Log(), Names());
}

TEST(ModuleCode, SegmentDirectiveComesBeforeSymbol) {
  ModuleReading reading;
  ModuleText module;
  module.symbols =
      "$DGS CSEG\n$DGS GLV_SYM, _a, 0, 0, 0, 0, 0, 02H\n$DGS CSEG\n"
      "$DGS GLV_SYM, _b, 0, 0, 0, 0, 0, 02H\n";
  module.functions += "; $CALL a()\n; $CALL b()\n";
  EXPECT_TRUE(reading.Read(module.All()));
  EXPECT_EQ(reading.CallNames("_f"), Names{"_a"});
}

// Frame size and log of a function with the given prologue calls.
uint32_t FrameOf(const std::string& version, const std::string& calls, const std::string& figure,
                 Names& log) {
  ModuleReading reading;
  ModuleText module;
  module.header = "; Tarn C Compiler V" + version + " Assembler Source\n";
  module.code = "D DSEG\nC CSEG\nbs_Fp:\n\tcallt [@@cprep2]\n\tcallt [@@cprep2]\n_f:\n" + calls;
  module.functions = "; $FUNC f()\n; CODE SIZE=9 bytes, 0, STACK_SIZE=" + figure + " bytes\n";
  module.functions += module.functions;
  EXPECT_TRUE(reading.Read(module.All()));
  log = reading.Log();
  EXPECT_EQ(reading.BoxCount(), log.size());
  EXPECT_EQ(reading.CallNames("_f"), Names());
  return reading.Function("_f").frameSize;
}

TEST(ModuleCode, OldCompilersCountThePrologueHelper) {
  const std::string once = "\tcallt [@@cprep2]\n";
  Names log;
  EXPECT_EQ(FrameOf("3.60", once + once + once, "10", log), 4U);
  EXPECT_EQ(FrameOf("3.70", once + once + once, "10", log), 10U);
  EXPECT_EQ(FrameOf("3.69", once + "\tcall !bs_Fp\n", "10", log), 6U);
  EXPECT_EQ(FrameOf("3.60", once + once + once, "6", log), 0U);
  EXPECT_EQ(FrameOf("3.60", once + once + once, "5", log), 5U);  // never understated
  EXPECT_EQ(FrameOf("3.60", once, "65536", log), kOverSize);
  EXPECT_EQ(log, Names());
  // Too old for helpers: said once, however many functions call them.
  EXPECT_EQ(FrameOf("3.20", once + "\tcallt [@@fmul]\n", "10", log), 8U);
  EXPECT_EQ(log, Names{"W9433 Cannot accept CCTarn V3.20 generated assembler source module "
                       "file.\nUse V3.30 or later."});
  EXPECT_EQ(FrameOf("3.20", "", "10", log), 10U);
  EXPECT_EQ(log, Names());
}

}  // namespace
}  // namespace velkor
