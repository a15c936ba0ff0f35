#include "readers/module_reading.h"

namespace velkor {
namespace {

using testing::ModuleReading;
using testing::ModuleText;

struct Facts {
  bool function = false;  // a "$CALL x" is a call of it
  bool isStatic = false;
  bool presetMargin = false;
  bool operator==(const Facts&) const = default;
};

// What a symbol line tells about the symbol _x.
Facts FactsOf(const std::string& symbolLine, const std::string& name = "x") {
  ModuleReading reading;
  ModuleText module;
  module.symbols = "$DGS FIL_NAM, .file\n" + symbolLine + "\n";
  module.functions = "; $FUNC " + name +
                     "()\n; CODE SIZE=9 bytes, 0, STACK_SIZE=1 bytes\n; $CALL " + name + "()\n";
  EXPECT_TRUE(reading.Read(module.All()));
  const StkFunction& function = reading.Function("_" + name);
  EXPECT_EQ(function.librarySize, function.Is(FN_FIXED_EXTRA) ? kFixedExtraSize : 0);
  return {!function.Is(FN_INDIRECT_CALL), function.IsStatic(), function.Is(FN_FIXED_EXTRA)};
}

TEST(ModuleSymbols, KindAndTypeTellFunctions) {
  const Facts nothing;
  const Facts global{.function = true};
  const Facts isStatic{.function = true, .isStatic = true};
  EXPECT_EQ(FactsOf("$DGS GLV_SYM, _x, 0, 0, 0, 0, 0, 02H"), global);
  EXPECT_EQ(FactsOf("$DGS STA_SYM, _x, 0, 0, 0, 0, 0, 02H"), isStatic);
  EXPECT_EQ(FactsOf("\t$ DGSSTA_SYM_ignored"), nothing);
  EXPECT_EQ(FactsOf(" $ \tDGS\tSTA_SYM,,\t_x ,U,,U,0 ,6 6,7,\t,0FFFfFFFEH and more"), isStatic);
  EXPECT_EQ(FactsOf("$DGS GLV_SYM_x, 0, 0, 0, 0, 0, 02H"), global);
  EXPECT_EQ(FactsOf("$DGS GLV_SYM, _x, 0, 0, 0, 0, 0, 100000002H"), nothing);
  EXPECT_EQ(FactsOf("$DGS GLV_SYM, x, 0, 0, 0, 0, 0, 02H"), nothing);
  EXPECT_EQ(FactsOf("$DGS LAB_SYM, _x, 0, 0, 0, 0, 0, 02H"), nothing);
  EXPECT_EQ(FactsOf("$dgs GLV_SYM, _x, 0, 0, 0, 0, 0, 02H"), nothing);
  EXPECT_EQ(FactsOf("$DGS IDE_FUN, ?x, 0, 0, 0, 0, 0, 01H"), global);
  EXPECT_EQ(FactsOf("$DGS IDE_FUN, \xE3\x81\x82x, 0, 0, 0, 0, 0, gH"), global);
}

TEST(ModuleSymbols, LibrarySymbolsAreFunctionsWhateverTheirType) {
  EXPECT_EQ(FactsOf("$DGS STA_SYM, _memcpy, 0, 0, 0, 0, 0, 01H", "memcpy"),
            (Facts{.function = true, .isStatic = true}));
  EXPECT_EQ(FactsOf("$DGS GLV_SYM, ___assertfail, 0, 0, 0, 0, 0, 0H", "__assertfail"),
            Facts{.function = true});
  EXPECT_EQ(FactsOf("$DGS GLV_SYM, _memcmp, 0, 0, 0, 0, 0, 01H", "memcmp"), Facts());
}

TEST(ModuleSymbols, BrokenFieldsTellNothing) {
  for (const char* line :
       {"$DGS GLV_SYM, _x, 0, 0, 0, 0, 0, H", "$DGS GLV_SYM, _x, 0, 0, 0, 0, 0, 02",
        "$DGS GLV_SYM, _x, 0, 0, 0, 0, 02H", "$DGS GLV_SYM, _x 0 0 0 0 0 02H", "$DGS GLV_SYM",
        "$DGS IDE_FUN, x", "$DGS", "$DGS GLV_SYM, _x, 0, 0, 0, 0, 0,"}) {
    EXPECT_EQ(FactsOf(line), Facts()) << line;
  }
  EXPECT_EQ(FactsOf(std::string("$DGS GLV_SYM, _x, 0, 0, 0, \0, 0, 02H", 36)), Facts());
}

TEST(ModuleSymbols, FifthFieldMarksAPresetMargin) {
  EXPECT_EQ(FactsOf("$DGS GLV_SYM, _x, 0, 0, 07abcH, 0, 0, 02H"),
            (Facts{.function = true, .presetMargin = true}));
  EXPECT_EQ(FactsOf("$DGS IDE_FUN, .x, 0, 0, 07abcH9, 0, 0, 02H"),
            (Facts{.function = true, .presetMargin = true}));
  // Later fields may be broken, or the symbol no function.
  EXPECT_EQ(FactsOf("$DGS GLV_SYM, _x, 0, 0, 07abcH, 0"), Facts{.presetMargin = true});
  EXPECT_EQ(FactsOf("$DGS STA_SYM, _x, 0, 0, 07abcH, 0, 0, 01H"), Facts{.presetMargin = true});
  for (const char* field : {"07abH", "07abccH", "17abcH", "00abcH", "07abch"}) {
    EXPECT_FALSE(
        FactsOf("$DGS GLV_SYM, _x, 0, 0, " + std::string(field) + ", 0, 0, 02H").presetMargin)
        << field;
  }
}

}  // namespace
}  // namespace velkor
