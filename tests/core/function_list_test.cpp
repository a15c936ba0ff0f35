#include "core/function_list.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "core/function.h"

namespace velkor {
namespace {

class FunctionList : public ::testing::Test {
 protected:
  StkFunction& Make(std::string_view name) {
    functions_.push_back(std::make_unique<StkFunction>());
    functions_.back()->name = name;
    functions_.back()->index = static_cast<uint32_t>(functions_.size());
    return *functions_.back();
  }

  CodePage codePage_ = CodePage::Utf8();
  std::vector<std::unique_ptr<StkFunction>> functions_;
};

TEST_F(FunctionList, SortsByNameAndThenByTableOrder) {
  StkFunction& b1 = Make("_b");
  StkFunction& upper = Make("_B");
  StkFunction& plain = Make("a");
  StkFunction& b2 = Make("_b");
  StkFunction& prefix = Make("_");
  StkFunction& doubleByte = Make("_\x82\xA0");
  StkFunction& singleByte = Make("_\xB1");
  StkFunctionList list{&plain, &b2, &prefix, &doubleByte, &b1, &upper, &singleByte};
  SortByName(list, CodePage::ShiftJis());
  EXPECT_EQ(list, (StkFunctionList{&prefix, &upper, &b1, &b2, &singleByte, &doubleByte, &plain}));
}

TEST_F(FunctionList, InsertsBeforeTheFirstGreaterName) {
  StkFunction& a = Make("_a");
  StkFunction& c = Make("_c");
  StkFunction& b = Make("_b");
  StkFunction& otherA = Make("_a");
  StkFunction& z = Make("_z");
  StkFunctionList list{&a, &c};
  EXPECT_EQ(InsertByName(list, b, codePage_), 1);
  EXPECT_EQ(InsertByName(list, otherA, codePage_), 1);
  EXPECT_EQ(InsertByName(list, z, codePage_), 4);
  const StkFunctionList expected{&a, &otherA, &b, &c, &z};
  EXPECT_EQ(list, expected);
  EXPECT_EQ(InsertByName(list, b, codePage_), -1);
  EXPECT_EQ(list, expected);

  StkFunctionList unsorted{&z, &a};
  EXPECT_EQ(InsertByName(unsorted, b, codePage_), 0);
}

TEST(FunctionRecord, IconsFollowTheKind) {
  StkFunction function;
  const auto expectIcon = [&function](int icon) {
    EXPECT_EQ(function.IconIndex(false, false), icon);
    EXPECT_EQ(function.IconIndex(false, true), icon + 10);
    EXPECT_EQ(function.IconIndex(true, false), 0);
    EXPECT_EQ(function.IconIndex(true, true), 10);
  };
  expectIcon(3);
  function.SetFixedExtra();
  EXPECT_EQ(function.librarySize, 6U);
  expectIcon(3);
  function.flags |= FN_DEFINED;
  expectIcon(4);
  function.flags |= FN_RECURSIVE;
  expectIcon(2);
  function.flags |= FN_LIBRARY;
  expectIcon(1);
  function.flags &= ~uint32_t{FN_LIBRARY};
  function.adjustment = std::make_unique<StkAppliedAdjustment>();
  expectIcon(1);
}

}  // namespace
}  // namespace velkor
