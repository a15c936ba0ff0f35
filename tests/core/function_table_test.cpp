#include "core/function_table.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace velkor {
namespace {

class FunctionTable : public ::testing::Test {
 protected:
  StkFunction& Add(std::string_view name, std::string_view file, uint32_t flags = 0) {
    StkFunction& function = table_.AddDefined(name, files_.Intern(file));
    function.flags |= flags;
    return function;
  }

  static StkAdjustment Margin(uint32_t margin) {
    StkAdjustment adjustment;
    adjustment.margin = margin;
    return adjustment;
  }

  CodePage codePage_ = CodePage::Utf8();
  StkFileTable files_{codePage_};
  StkFunctionTable table_{codePage_};
};

TEST_F(FunctionTable, ANewRecordIsEmptyButForItsChain) {
  const StkFunction& function = Add("_f", "a.c");
  EXPECT_EQ(function.flags, FN_DEFINED);
  EXPECT_EQ(function.chainCount, 1);
  EXPECT_EQ(function.frameSize + function.totalStackSize + function.librarySize, 0U);
  EXPECT_FALSE(function.adjustment || function.pendingAdjustment);
  EXPECT_TRUE(table_.CallNames(function).empty());
  EXPECT_EQ(table_.UnknownCount(), 0U);
  EXPECT_EQ(table_.AddUnknown("_g").index, 1U);
  EXPECT_EQ(table_.UnknownCount(), 1U);
}

TEST_F(FunctionTable, ACallMeansTheNearestFunctionOfItsName) {
  const StkFunction& ownStatic = Add("_f", "a.c");
  const StkFunction& farGlobal = Add("_f", "b.c", FN_GLOBAL);
  const StkFunction& laterGlobal = Add("_f", "c.c", FN_GLOBAL);
  Add("_f", "c.c", FN_GLOBAL);
  EXPECT_EQ(&table_.ResolveCall(Add("_x", "a.c"), "_f"), &ownStatic);
  EXPECT_EQ(&table_.ResolveCall(Add("_y", "B.C"), "_f"), &farGlobal);
  EXPECT_EQ(&table_.ResolveCall(Add("_z", "c.c"), "_f"), &laterGlobal);
  EXPECT_EQ(&table_.ResolveCall(Add("_w", "d.c"), "_f"), &farGlobal);

  const StkFunction& lateStatic = Add("_f", "c.c");
  EXPECT_EQ(&table_.ResolveCall(Add("_v", "c.c"), "_f"), &lateStatic);
}

TEST_F(FunctionTable, AStaticOfAnotherFileIsOutOfReach) {
  Add("_f", "a.c");
  const StkFunction& caller = Add("_x", "b.c");
  StkFunction& unknown = table_.ResolveCall(caller, "_f");
  EXPECT_TRUE(unknown.IsUnknown());
  EXPECT_EQ(unknown.file, nullptr);
  EXPECT_EQ(&table_.ResolveCall(Add("_y", "c.c"), "_f"), &unknown);
  EXPECT_NE(&table_.ResolveCall(caller, "_F"), &unknown);
  EXPECT_EQ(table_.UnknownCount(), 2U);
  EXPECT_EQ(table_.Count(), 5U);
}

TEST_F(FunctionTable, ResolvingLinksBothDirections) {
  StkFunction& main = Add("_main", "a.c", FN_GLOBAL);
  StkFunction& other = Add("_other", "a.c", FN_GLOBAL);
  for (const char* name : {"_z", "_other", "_main", "_z", "_a"}) {
    table_.AddCallName(main, name);
  }
  table_.AddCallName(other, "_z");
  table_.ResolveAllCalls();

  ASSERT_EQ(table_.Count(), 4U);
  StkFunction& z = *table_.Functions()[2];
  StkFunction& a = *table_.Functions()[3];
  EXPECT_EQ(z.name, "_z");
  EXPECT_EQ(main.callees, (StkFunctionList{&a, &main, &other, &z}));
  EXPECT_EQ(z.callers, (StkFunctionList{&main, &other}));
  EXPECT_EQ(main.callers, StkFunctionList{&main});
  EXPECT_TRUE(main.CallsDirectly(a));
  EXPECT_FALSE(other.CallsDirectly(a));
  EXPECT_TRUE(table_.CallNames(main).empty() && table_.CallNames(other).empty());
  table_.ResolveAllCalls();
  EXPECT_EQ(main.callees.size(), 4U);
}

TEST_F(FunctionTable, AnUnknownFunctionIsUnknownUntilItsFirstLibrarySize) {
  StkFunction& unknown = table_.AddUnknown("_memcpy");
  StkFunction& defined = Add("_strlen", "a.c");
  table_.SetLibrarySize(unknown, 4);
  table_.SetLibrarySize(unknown, 6);
  table_.SetLibrarySize(defined, 8);
  EXPECT_EQ(table_.UnknownCount(), 0U);
  EXPECT_EQ(unknown.librarySize, 6U);
  EXPECT_TRUE(defined.Is(FN_LIBRARY));
  EXPECT_FALSE(unknown.IsUnknown());
}

TEST_F(FunctionTable, SpecificationNamesLeadToSymbols) {
  StkFunction& plain = Add("_f", "a.c", FN_GLOBAL);
  StkFunction& onlyDouble = Add("__g", "a.c", FN_GLOBAL);
  StkFunction& helper = table_.AddUnknown("__h");
  StkFunction& single = table_.AddUnknown("_h");
  EXPECT_EQ(table_.FindBySpecName("", "f", false), &plain);
  EXPECT_EQ(table_.FindBySpecName("", "_f", false), &plain);
  EXPECT_EQ(table_.FindBySpecName("", "_g", false), &onlyDouble);
  EXPECT_EQ(table_.FindBySpecName("", "_h", true), &helper);
  EXPECT_EQ(table_.FindBySpecName("", "_h", false), &single);
  EXPECT_EQ(table_.FindBySpecName("", "F", false), nullptr);
  EXPECT_EQ(table_.FindBySpecName("", "", false), nullptr);
}

TEST_F(FunctionTable, AQualifiedNameFindsOnlyAStaticOfThatFile) {
  StkFunction& stat = Add("_f", "C:\\src\\util.c");
  Add("_f", "D:\\util.c");
  StkFunction& global = Add("_f", "C:\\src\\main.c", FN_GLOBAL);
  EXPECT_EQ(table_.FindBySpecName("UTIL.C", "f", false), &stat);
  EXPECT_EQ(table_.FindBySpecName("UTIL.C", "_f", false), &stat);
  EXPECT_EQ(table_.FindBySpecName("main.c", "f", false), nullptr);
  EXPECT_EQ(table_.FindBySpecName("src\\util.c", "f", false), nullptr);
  EXPECT_EQ(table_.FindBySpecName("", "f", false), &global);

  StkFunction& lone = Add("_g", "util.c");
  EXPECT_EQ(table_.FindBySpecName("", "g", false), &lone);
}

TEST_F(FunctionTable, AdjustmentsAreCountedOncePerFunction) {
  StkFunction& f = Add("_f", "a.c");
  StkFunction& g = Add("_g", "a.c");
  StkFunction& unknown = table_.AddUnknown("_u");
  f.adjustment = std::make_unique<StkAppliedAdjustment>();
  table_.SetAdjustedCount(1);
  table_.SetPendingAdjustment(f, Margin(1));
  table_.SetPendingAdjustment(g, Margin(1));
  table_.SetPendingAdjustment(g, Margin(2));
  EXPECT_EQ(table_.AdjustedCount(), 2U);
  EXPECT_EQ(g.pendingAdjustment->margin, 2U);
  table_.DiscardPendingAdjustments();
  EXPECT_EQ(table_.AdjustedCount(), 1U);
  EXPECT_FALSE(f.pendingAdjustment || g.pendingAdjustment);

  EXPECT_EQ(table_.CountForSpecFile(false), 1U);
  EXPECT_EQ(table_.CountForSpecFile(true), 2U);
  unknown.adjustment = std::make_unique<StkAppliedAdjustment>();
  EXPECT_EQ(table_.CountForSpecFile(true), 2U);
}

TEST_F(FunctionTable, ClearForgetsEverything) {
  table_.AddCallName(Add("_f", "a.c"), "_g");
  table_.ResolveAllCalls();
  table_.SetPendingAdjustment(*table_.Functions()[0], {});
  table_.SetOverflow(true);
  table_.Clear();
  EXPECT_EQ(table_.Count() + table_.UnknownCount() + table_.AdjustedCount(), 0U);
  EXPECT_FALSE(table_.Overflow());
  EXPECT_EQ(table_.FindBySpecName("", "f", false), nullptr);
  EXPECT_EQ(Add("_f", "a.c").index, 0U);
}

// Would take minutes if a lookup walked the records of its name, or a callee its callers.
TEST_F(FunctionTable, OneNameInVeryManyFiles) {
  constexpr size_t kFiles = 50000;
  StkFunction& shared = table_.AddUnknown("_shared");
  for (size_t i = 0; i < kFiles; ++i) {
    const std::string file = "d\\f" + std::to_string(i) + ".c";
    table_.AddCallName(Add("_init", file), "_shared");
    table_.AddCallName(Add("_main" + std::to_string(i), file, FN_GLOBAL), "_init");
  }
  table_.ResolveAllCalls();
  EXPECT_EQ(shared.callers.size(), kFiles);
  for (size_t i = 0; i < kFiles; ++i) {
    StkFunction* init = table_.Functions()[1 + 2 * i];
    ASSERT_EQ(init->callers, StkFunctionList{table_.Functions()[2 + 2 * i]});
    ASSERT_EQ(table_.FindBySpecName("F" + std::to_string(i) + ".C", "init", false), init);
  }
}

}  // namespace
}  // namespace velkor
