#include "ui/name_sorter.h"

#include <QTest>
#include <algorithm>
#include <gtest/gtest.h>
#include <random>

#include "core/function_table.h"
#include "qt_environment.h"
#include "ui/function_rows.h"

namespace velkor {
namespace {

// Functions in a random order of their names, some of which stand twice.
class NameSorting : public ::testing::Test {
 protected:
  StkFunctionList Functions(size_t count) {
    std::mt19937 random(static_cast<unsigned>(count));
    StkFunctionList list;
    for (size_t i = 0; i < count; ++i) {
      list.push_back(&table.AddUnknown("_f" + std::to_string(random() % (count + 1))));
    }
    std::shuffle(list.begin(), list.end(), random);
    return list;
  }
  StkFunctionList Sorted(StkFunctionList list) const {
    SortByName(list, codePage);
    return list;
  }

  const CodePage codePage = CodePage::Utf8();
  StkFunctionTable table{codePage};
};

TEST_F(NameSorting, InStepsGivesTheSameOrderAsAtOnce) {
  for (const size_t count : std::vector<size_t>{0, 1, 2, 2047, 2048, 2049, 4096, 10000, 30001}) {
    const StkFunctionList list = Functions(count);
    NameSorter sorter(list, codePage);
    size_t steps = 1;
    while (sorter.Step()) {
      ++steps;
    }
    EXPECT_EQ(sorter.Take(), Sorted(list)) << count;
    EXPECT_GE(steps, count / 2048) << "none of them long";
  }
}

TEST_F(NameSorting, ManyRowsComeWhenTheyAreInOrder) {
  testing::TestApplication();
  FunctionRows rows(codePage);
  rows.SetFunctionsByName(Functions(100));
  EXPECT_EQ(rows.Rows().rowCount(), 100);
  rows.SetFunctionsByName(Functions(50000));
  EXPECT_EQ(rows.Rows().rowCount(), 0);
  const StkFunctionList list = Functions(50000);
  rows.SetFunctionsByName(list);  // others take the place of those that are being sorted
  ASSERT_TRUE(QTest::qWaitFor([&rows] { return rows.Rows().rowCount() > 0; }, 30000));
  const StkFunctionList sorted = Sorted(list);
  for (size_t row = 0; row < sorted.size(); ++row) {
    ASSERT_EQ(rows.Rows().FunctionAt(static_cast<int>(row)), sorted[row]);
  }
}

}  // namespace
}  // namespace velkor
