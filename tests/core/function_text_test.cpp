#include "core/function_text.h"

#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>

namespace velkor {
namespace {

const CodePage kCodePage = CodePage::Utf8();

StkFunction Make(std::string_view name, uint32_t flags, const StkFileEntry* file = nullptr) {
  StkFunction function;
  function.name = name;
  function.flags = flags;
  function.file = file;
  return function;
}

void Adjust(StkFunction& function, uint32_t margin, uint32_t depth) {
  function.adjustment = std::make_unique<StkAppliedAdjustment>(
      StkAppliedAdjustment{.margin = margin, .depth = depth});
}

TEST(FunctionText, NamesShowWhereAFunctionComesFrom) {
  const StkFileEntry file{.name = "C:\\src\\Util.c"};
  const struct {
    std::string name;
    uint32_t flags;
    std::string specName;
    std::string displayName;
  } cases[] = {
      {"_f", FN_DEFINED | FN_GLOBAL, "f", "f"},
      {"_f", FN_DEFINED | FN_GLOBAL | FN_RECURSIVE | FN_INDIRECT_CALL, "f", "f*&"},
      {"_f", FN_DEFINED | FN_RECURSIVE, "Util.c#f", "Util.c#f*"},
      {"_f", 0, "[f]", "[f]"},
      {"_f", FN_LIBRARY | FN_RECURSIVE, "[f]", "[f]*"},
      {"__f", FN_DEFINED | FN_GLOBAL, "_f", "_f"},
      {"f_", FN_DEFINED | FN_GLOBAL, "f_", "f_"},
      {"_", 0, "[]", "[]"},
      {"_f", FN_DEFINED | FN_GLOBAL | FN_PLAIN_SYMBOL, "_f", "_f"},
  };
  for (const auto& each : cases) {
    const StkFunction function = Make(each.name, each.flags, &file);
    EXPECT_EQ(FunctionSpecName(function, kCodePage), each.specName);
    EXPECT_EQ(FunctionDisplayName(function, kCodePage), each.displayName);
  }
}

TEST(FunctionText, Sizes) {
  StkFunction unknown = Make("_u", 0);
  EXPECT_EQ(TotalSizeText(unknown), "?");
  unknown.totalStackSize = kOverSize;
  EXPECT_EQ(TotalSizeText(unknown), "SIZEOVER");
  unknown.totalStackSize = kSizeLimit;
  EXPECT_EQ(TotalSizeText(unknown), "?");
  Adjust(unknown, kNoMargin, kNoDepth);
  EXPECT_EQ(TotalSizeText(unknown), "65535");

  StkFunction library = Make("_l", FN_LIBRARY);
  EXPECT_EQ(TotalSizeText(library), "0");
  StkFunction defined = Make("_d", FN_DEFINED);
  EXPECT_EQ(FrameSizeText(defined) + FrameSizeText(library), "0?");
  defined.totalStackSize = defined.frameSize = kOverSize;
  EXPECT_EQ(TotalSizeText(defined) + FrameSizeText(defined), "SIZEOVERSIZEOVER");
}

TEST(FunctionText, AdjustmentInformation) {
  const struct {
    uint32_t flags;
    uint32_t librarySize;
    std::optional<StkAppliedAdjustment> adjustment;
    std::string report;
    std::string list;
  } cases[] = {
      {FN_DEFINED, 9, {}, "", ""},
      {FN_LIBRARY, 9, {}, "+9", "9"},
      {FN_LIBRARY, kOverSize, {}, "+SIZEOVER", "SIZEOVER"},
      {FN_DEFINED | FN_FIXED_EXTRA, 6, {}, "+6", "6"},
      {FN_LIBRARY, 9, {{kNoMargin, kNoDepth}}, "", ""},
      {FN_LIBRARY, 9, {{0, kNoDepth}}, "+0", "0"},
      {FN_DEFINED, 0, {{10, 3}}, "+10*3", "10 *3"},
      {FN_DEFINED, 0, {{kNoMargin, 3}}, "*3", "*3"},
      {FN_DEFINED, 0, {{10, 4294967295}}, "+10*4294967295", "10 *4294967295"},
  };
  for (const auto& each : cases) {
    StkFunction function = Make("_f", each.flags);
    function.librarySize = each.librarySize;
    if (each.adjustment) {
      Adjust(function, each.adjustment->margin, each.adjustment->depth);
    }
    EXPECT_EQ(AdjustmentInfoText(function, AdjustmentStyle::kReport), each.report);
    EXPECT_EQ(AdjustmentInfoText(function, AdjustmentStyle::kList), each.list);
  }
}

}  // namespace
}  // namespace velkor
