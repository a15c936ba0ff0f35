#include "core/function_table.h"

#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "core/function_sorting.h"
#include "fuzz/literal_spec.h"

namespace velkor {
namespace {

// The table's lookups against plain walks over its functions.
class Comparison {
 public:
  explicit Comparison(uint32_t seed) : random_(seed) {}

  void Run(size_t steps) {
    AddDefined();
    for (size_t i = 0; i < steps && !::testing::Test::HasFailure(); ++i) {
      const size_t kind = Below(3);
      kind == 0 ? AddDefined() : kind == 1 ? CompareCall() : CompareSpecName();
    }
  }

 private:
  size_t Below(size_t limit) { return random_() % limit; }

  std::string Pick(const std::vector<std::string>& texts) { return texts[Below(texts.size())]; }

  void AddDefined() {
    const bool global = Below(3) == 0;
    const StkFileEntry& file = files_.Intern(Pick({"x.c", "p\\X.c", "q/x.c", "y.c", "p:Y.C"}));
    table_.AddDefined(Pick(kNames), file).flags |= global ? FN_GLOBAL : uint32_t{0};
  }

  void CompareCall() {
    StkFunction& caller = *table_.Functions()[Below(table_.Count())];
    const std::string name = Pick(kNames);
    const StkFunction* expected = Called(caller, name);
    const size_t count = table_.Count();
    const StkFunction& found = table_.ResolveCall(caller, name);
    if (expected != nullptr) {
      EXPECT_EQ(&found, expected) << name;
    } else {
      EXPECT_TRUE(found.index == count && found.name == name && found.IsUnknown()) << name;
    }
    EXPECT_EQ(table_.Count(), expected != nullptr ? count : count + 1);
  }

  // A static function of the caller's file, then a global one of it, then one of any file, then
  // what nobody defines.
  const StkFunction* Called(const StkFunction& caller, const std::string& name) const {
    const StkFunction* found = nullptr;
    int best = 4;
    for (const StkFunction* function : table_.Functions()) {
      const bool same = function->file == caller.file;
      const int rank = !function->Is(FN_DEFINED)          ? 3
                       : same && !function->Is(FN_GLOBAL) ? 0
                       : same                             ? 1
                       : function->Is(FN_GLOBAL)          ? 2
                                                          : 4;
      if (function->name == name && rank < best) {
        found = function;
        best = rank;
      }
    }
    return found;
  }

  void CompareSpecName() {
    const std::string file = Pick({"", "x.c", "X.C", "y.c", "z.c"});
    const std::string name = Pick({"", "a", "_a", "b", "_", "__a"});
    const bool bracketed = Below(2) == 0;
    EXPECT_EQ(table_.FindBySpecName(file, name, bracketed),
              testing::FindLiterally(table_, file, name, bracketed))
        << file << "#" << name;
  }

  const std::vector<std::string> kNames{"_a", "_a", "__a", "_b", "a", "_"};

  std::mt19937 random_;
  CodePage codePage_ = CodePage::Utf8();
  StkFileTable files_{codePage_};
  StkFunctionTable table_{codePage_};
};

TEST(FunctionTableLookups, AgreeWithPlainWalks) {
  for (uint32_t seed = 0; seed < 3000 && !::testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    Comparison(seed).Run(seed % 10 == 0 ? 300 : 30);
  }
}

class FunctionTable : public ::testing::Test {
 protected:
  StkFunction& Add(std::string_view name, std::string_view file, uint32_t flags = 0) {
    StkFunction& function = table_.AddDefined(name, files_.Intern(file));
    function.flags |= flags;
    return function;
  }

  CodePage codePage_ = CodePage::Utf8();
  StkFileTable files_{codePage_};
  StkFunctionTable table_{codePage_};
};

TEST_F(FunctionTable, SortsByNameAndThenByTableOrder) {
  StkFunction& b1 = Add("_b", "a.c");
  StkFunction& upper = Add("_B", "a.c");
  StkFunction& plain = Add("a", "a.c");
  StkFunction& b2 = Add("_b", "b.c");
  StkFunction& prefix = Add("_", "a.c");
  StkFunction& doubleByte = Add("_\x82\xA0", "a.c");
  StkFunction& singleByte = Add("_\xB1", "a.c");
  StkFunctionList list{&plain, &b2, &prefix, &doubleByte, &b1, &upper, &singleByte};
  SortByName(list, CodePage::ShiftJis());
  EXPECT_EQ(list, (StkFunctionList{&prefix, &upper, &b1, &b2, &singleByte, &doubleByte, &plain}));
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
  EXPECT_EQ(table_.Callers(shared.index).size(), kFiles);
  for (size_t i = 0; i < kFiles; ++i) {
    StkFunction* init = table_.Functions()[1 + 2 * i];
    ASSERT_EQ(table_.Callers(init->index).size(), 1u);
    ASSERT_EQ(table_.Callers(init->index).front(), 2 + 2 * i);
    ASSERT_EQ(table_.FindBySpecName("F" + std::to_string(i) + ".C", "init", false), init);
  }
}

}  // namespace
}  // namespace velkor
