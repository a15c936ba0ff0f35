#include <algorithm>
#include <optional>

#include "readers/tarn/module_reading.h"

namespace velkor {
namespace {

using testing::FormatErrorAt;
using testing::kAborted;
using testing::ModuleReading;
using testing::ModuleText;
using Names = std::vector<std::string>;

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

TEST(ModuleInformation, NamesAreKeptUpToTheirLimit) {
  for (const size_t length : {5119U, 5120U, 5121U}) {
    const std::string name = std::string(length - 1, 'n') + "z";
    ModuleText module;
    module.functions = "; $FUNC " + name.substr(0, 3000) + "\n;" + name.substr(3000) +
                       "()\n; CODE SIZE=9 bytes, 0, STACK_SIZE=1 bytes\n";
    ModuleReading reading;
    EXPECT_TRUE(reading.Read(module.All()));
    ASSERT_EQ(reading.functions.Count(), 1U);
    EXPECT_EQ(reading.functions.Functions()[0]->name, "_" + name.substr(0, 5120));
  }
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
  const std::string marked = "$DGS GLV_SYM, _x, 0, 0, 07abcH, 0, 0, 02H";
  const std::string plain = "$DGS STA_SYM, _x, 0, 0, 0, 0, 0, 02H";
  for (const std::string& twice : {marked + "\n" + plain, plain + "\n" + marked}) {
    EXPECT_EQ(FactsOf(twice), (Facts{.function = true, .isStatic = true, .presetMargin = true}));
  }
  // Later fields may be broken, or the symbol no function.
  EXPECT_EQ(FactsOf("$DGS GLV_SYM, _x, 0, 0, 07abcH, 0"), Facts{.presetMargin = true});
  EXPECT_EQ(FactsOf("$DGS STA_SYM, _x, 0, 0, 07abcH, 0, 0, 01H"), Facts{.presetMargin = true});
  for (const char* field : {"07abH", "07abccH", "17abcH", "00abcH", "07abch"}) {
    EXPECT_FALSE(
        FactsOf("$DGS GLV_SYM, _x, 0, 0, " + std::string(field) + ", 0, 0, 02H").presetMargin)
        << field;
  }
}

const std::string kSize = "; CODE SIZE=9 bytes, 0, STACK_SIZE=10 bytes\n";

ModuleText Block(const std::string& functions) {
  ModuleText module;
  module.symbols += "$DGS GLV_SYM, _sub, 0, 0, 0, 0, 0, 02H\n";
  module.functions = functions;
  return module;
}

TEST(ModuleInformation, NamesGoOnInTheNextLines) {
  ModuleReading reading;
  ModuleText module = Block("; $FUNC f\nno comment\n;\n;oo(\n" + kSize +
                            "; $CALL s\n; u\n;b()\n; $FUNC\n;   main ()\n" + kSize +
                            ";$CALL sub \n;$CALL\n; sub(\n");
  module.file =
      "; *** Code Information *** of a module\n; nothing\n;$FILE\n; $FILE C:\\my files\n"
      "x\n;\t\\m .c\n; \t\n; $FILE C:\\other.c\n;\n";
  EXPECT_TRUE(reading.Read(module.All()));
  ASSERT_EQ(reading.functions.Count(), 2U);
  EXPECT_EQ(reading.Function("_foo").file->name, "C:\\my files\\m .c");
  EXPECT_EQ(reading.CallNames("_foo"), Names{"_sub"});
  EXPECT_EQ(reading.CallNames("_main"), Names{"_sub"});
  EXPECT_FALSE(reading.Function("_main").Is(FN_INDIRECT_CALL));
  EXPECT_EQ(reading.files.size(), 1U);
}

TEST(ModuleInformation, StackFigures) {
  const auto frameOf = [](const std::string& line) -> std::optional<uint32_t> {
    ModuleReading reading;
    EXPECT_TRUE(reading.Read(Block("; $FUNC f()\n;" + line + "\n").All()));
    return reading.functions.Count() == 0 ? std::nullopt
                                          : std::optional(reading.Function("_f").frameSize);
  };
  EXPECT_EQ(frameOf(" CODE SIZE=9 bytes, 0, STACK_SIZE=0 bytes"), 0U);
  EXPECT_EQ(frameOf("\tCODE SIZE=,x, \t,STACK_SIZE=\t 65535\t bytesX"), 65535U);
  EXPECT_EQ(frameOf("CODE SIZE=1,2,STACK_SIZE=65536 bytes"), kOverSize);
  EXPECT_EQ(frameOf("CODE SIZE=1,2,STACK_SIZE=" + std::string(400, '9') + " bytes"), kOverSize);
  for (const char* line :
       {"CODE SIZE=1,2,STACK_SIZE=ten bytes", "CODE SIZE=1,2,STACK_SIZE=1x bytes",
        "CODE SIZE=1,2,STACK_SIZE=-1 bytes", "CODE SIZE=1,2,STACK_SIZE=10 words",
        "CODE SIZE=1,STACK_SIZE=10 bytes", "CODE SIZE=1,2,STACK_SIZE=10",
        "CODE SIZE=1,2,STACK_SIZE=", "CODE SIZE=1,2,", "CODE SIZE="}) {
    EXPECT_EQ(frameOf(line), std::nullopt) << line;
  }
}

TEST(ModuleInformation, CalleesOfTheRecord) {
  ModuleReading reading;
  EXPECT_TRUE(reading.Read(Block("; $FUNC f()\n; waiting\n" + kSize +
                                 "; $CALL sub()\n; $CALL sub()\n; $CALL f (\n; comment\n")
                               .All()));
  EXPECT_EQ(reading.CallNames("_f"), (Names{"_sub", "_f"}));
  EXPECT_FALSE(reading.Function("_f").Is(FN_INDIRECT_CALL));
  for (const char* call : {"; $CALL ()\n", "; $CALL pointer()\n", "; $CALL Sub()\n"}) {
    ModuleReading indirect;
    EXPECT_TRUE(indirect.Read(Block("; $FUNC f()\n" + kSize + call).All()));
    EXPECT_TRUE(indirect.Function("_f").Is(FN_INDIRECT_CALL)) << call;
    EXPECT_EQ(indirect.CallNames("_f"), Names());
  }
}

TEST(ModuleInformation, CallBeforeAnyRecordIsAFormatError) {
  for (const std::string& before : Names{"", "; $FUNC (\n", "; $FUNC f()\n; CODE SIZE=broken\n"}) {
    ModuleReading reading;
    const std::string text = Block(before + "; $CALL s\n;ub()\n; $FUNC f()\n" + kSize).All();
    EXPECT_FALSE(reading.Read(text));
    const std::string whole = text.substr(0, text.find(";ub()"));
    const auto line = static_cast<uint32_t>(std::count(whole.begin(), whole.end(), '\n') + 1);
    EXPECT_EQ(reading.Log(), Names({FormatErrorAt(line), kAborted}));
    EXPECT_EQ(reading.BoxCount(), 1U);
    EXPECT_EQ(reading.functions.Count(), 0U);
  }
}

TEST(ModuleInformation, CallsOfAFunctionWithoutRecordAreNobodys) {
  ModuleReading reading;
  EXPECT_TRUE(reading.Read(Block("; $FUNC f()\n" + kSize +
                                 "; $FUNC g()\n; CODE SIZE=broken\n; $CALL sub()\n; $CALL p()\n"
                                 "; $FUNC h()\n" +
                                 kSize + "; $CALL sub()\n")
                               .All()));
  EXPECT_EQ(reading.functions.Count(), 2U);
  EXPECT_EQ(reading.CallNames("_f"), Names());
  EXPECT_FALSE(reading.Function("_f").Is(FN_INDIRECT_CALL));
  EXPECT_EQ(reading.CallNames("_h"), Names{"_sub"});
}

TEST(ModuleInformation, StaticsKeepTheirNameAndFile) {
  ModuleReading reading;
  ModuleText module;
  module.symbols = "$DGS STA_SYM, _f, 0, 0, 07abcH, 0, 0, 02H\n";
  module.code += "\tcallt [@@fmul]\n";
  module.functions += "; $CALL f()\n";
  EXPECT_TRUE(reading.Read(module.All()));
  module.file = "; *** Code Information ***\n; $FILE c:\\P\\M.C\n;\n";
  EXPECT_TRUE(reading.Read(module.All()));
  ASSERT_EQ(reading.functions.Count(), 2U);
  EXPECT_EQ(reading.files.size(), 1U);
  const StkFunction& function = reading.Function("_f");
  EXPECT_EQ(function.flags, FN_DEFINED | FN_FIXED_EXTRA);
  EXPECT_EQ(function.librarySize, kFixedExtraSize);
  EXPECT_EQ(reading.CallNames("_f"), (Names{"_@fmul", "_f"}));
}

}  // namespace
}  // namespace velkor
