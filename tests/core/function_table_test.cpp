#include "core/function_table.h"

#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace velkor {
namespace {

// The table's lookups as plain walks over a list of records.
class Model {
 public:
  struct Record {
    std::string name;
    const StkFileEntry* file;
    bool defined;
    bool global;
  };

  static constexpr size_t kNone = SIZE_MAX;

  size_t Add(Record record) {
    records_.push_back(std::move(record));
    return records_.size() - 1;
  }

  size_t ResolveCall(size_t caller, const std::string& name) {
    const StkFileEntry* file = records_[caller].file;
    size_t found =
        First(name, [&](const Record& r) { return r.defined && !r.global && r.file == file; });
    if (found == kNone) {
      found = First(name, [&](const Record& r) { return r.defined && r.global && r.file == file; });
    }
    if (found == kNone) {
      found = First(name, [](const Record& r) { return r.defined && r.global; });
    }
    if (found == kNone) {
      found = First(name, [](const Record& r) { return !r.defined; });
    }
    return found != kNone ? found : Add({name, nullptr, false, false});
  }

  size_t FindBySpecName(const std::string& file, const std::string& name, bool bracketed,
                        const CodePage& codePage) const {
    if (!bracketed && name.starts_with("_")) {
      if (const size_t found = Look(file, name, codePage); found != kNone) {
        return found;
      }
    }
    return Look(file, "_" + name, codePage);
  }

  size_t Count() const { return records_.size(); }

 private:
  template <typename Fits>
  size_t First(const std::string& name, Fits fits) const {
    for (size_t i = 0; i < records_.size(); ++i) {
      if (records_[i].name == name && fits(records_[i])) {
        return i;
      }
    }
    return kNone;
  }

  size_t Look(const std::string& file, const std::string& name, const CodePage& codePage) const {
    if (!file.empty()) {
      return First(name, [&](const Record& r) {
        return r.defined && !r.global && codePage.EqualIgnoreCase(r.file->BaseName(codePage), file);
      });
    }
    const size_t global = First(name, [](const Record& r) { return r.global; });
    return global != kNone ? global : First(name, [](const Record&) { return true; });
  }

  std::vector<Record> records_;
};

class Comparison {
 public:
  explicit Comparison(uint32_t seed) : random_(seed) {}

  void Run(size_t steps) {
    AddDefined();
    for (size_t i = 0; i < steps && !::testing::Test::HasFailure(); ++i) {
      const size_t kind = Below(3);
      kind == 0 ? AddDefined() : kind == 1 ? CompareCall() : CompareSpecName();
      ASSERT_EQ(table_.Count(), model_.Count());
    }
  }

 private:
  size_t Below(size_t limit) { return random_() % limit; }

  std::string Pick(const std::vector<std::string>& texts) { return texts[Below(texts.size())]; }

  void AddDefined() {
    const std::string name = Pick(kNames);
    const bool global = Below(3) == 0;
    const StkFileEntry& file = files_.Intern(Pick(kFiles));
    table_.AddDefined(name, file).flags |= global ? FN_GLOBAL : uint32_t{0};
    model_.Add({name, &file, true, global});
  }

  void CompareCall() {
    const size_t caller = Below(model_.Count());
    const std::string name = Pick(kNames);
    const StkFunction& found = table_.ResolveCall(*table_.Functions()[caller], name);
    EXPECT_EQ(found.index, model_.ResolveCall(caller, name)) << name;
  }

  void CompareSpecName() {
    const std::string file = Pick({"", "x.c", "X.C", "y.c", "z.c"});
    const std::string name = Pick({"", "a", "_a", "b", "_", "__a"});
    const bool bracketed = Below(2) == 0;
    const StkFunction* found = table_.FindBySpecName(file, name, bracketed);
    EXPECT_EQ(found == nullptr ? Model::kNone : found->index,
              model_.FindBySpecName(file, name, bracketed, codePage_))
        << file << "#" << name;
  }

  const std::vector<std::string> kNames{"_a", "_a", "__a", "_b", "a", "_"};
  const std::vector<std::string> kFiles{"x.c", "p\\X.c", "q/x.c", "y.c", "p:Y.C", "z.c"};

  std::mt19937 random_;
  CodePage codePage_ = CodePage::Utf8();
  StkFileTable files_{codePage_};
  StkFunctionTable table_{codePage_};
  Model model_;
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

  static StkAdjustment Margin(uint32_t margin) {
    StkAdjustment adjustment;
    adjustment.margin = margin;
    return adjustment;
  }

  CodePage codePage_ = CodePage::Utf8();
  StkFileTable files_{codePage_};
  StkFunctionTable table_{codePage_};
};

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
