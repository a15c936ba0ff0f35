#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "core/function_table.h"

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
      switch (Below(6)) {
        case 0:
        case 1:
          AddDefined();
          break;
        case 2:
        case 3:
          CompareCall();
          break;
        default:
          CompareSpecName();
      }
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

TEST(FunctionTableModel, LookupsAgreeWithPlainWalks) {
  for (uint32_t seed = 0; seed < 3000 && !::testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    Comparison(seed).Run(seed % 10 == 0 ? 300 : 30);
  }
}

}  // namespace
}  // namespace velkor
