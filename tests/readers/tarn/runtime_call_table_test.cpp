#include "readers/tarn/runtime_call_table.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace velkor {
namespace {

// Copies every helper of a stub at once.
struct CopyingTable {
  struct Entry {
    std::vector<std::string> helpers;
    uint32_t cprep2Count = 0;
  };

  void AddHelper(const std::string& label, const std::string& helper) {
    Entry& entry = entries[label];
    if (std::find(entry.helpers.begin(), entry.helpers.end(), helper) == entry.helpers.end()) {
      entry.helpers.push_back(helper);
    }
    entry.cprep2Count += helper == "cprep2" ? 1U : 0U;
  }
  void AddStub(const std::string& label, const std::string& stub) {
    const auto found = entries.find(stub);
    if (found == entries.end()) {
      return;
    }
    for (const std::string& helper : std::vector<std::string>(found->second.helpers)) {
      AddHelper(label, helper);
    }
  }

  std::map<std::string, Entry> entries;
};

std::vector<std::string> Names(StkRuntimeCallTable& table, const std::string& label) {
  std::vector<std::string> names;
  for (const uint32_t helper : table.Helpers(label)) {
    names.emplace_back(table.HelperName(helper));
  }
  return names;
}

TEST(RuntimeCallTable, AgreesWithATableThatCopies) {
  const std::vector<std::string> labels = {"_f", "_g", "bs_F1", "bs_F2", "bs_S3"};
  const std::vector<std::string> helpers = {"cprep2", "lsmul", "fadd", "fmul"};
  std::mt19937 random(3);
  for (int round = 0; round < 3000; ++round) {
    StkRuntimeCallTable table;
    CopyingTable copying;
    for (auto step = random() % 20; step > 0; --step) {
      const std::string& label = labels[random() % labels.size()];
      if (random() % 2 == 0) {
        const std::string& helper = helpers[random() % helpers.size()];
        table.AddHelper(label, helper);
        copying.AddHelper(label, helper);
      } else {
        const std::string& stub = labels[2 + random() % 3];
        table.AddStub(label, stub);
        copying.AddStub(label, stub);
      }
    }
    for (const std::string& label : labels) {
      const CopyingTable::Entry expected = copying.entries[label];
      ASSERT_EQ(Names(table, label), expected.helpers);
      ASSERT_EQ(table.Cprep2Count(label), expected.cprep2Count);
      ASSERT_EQ(table.CallsHelpers(label), !expected.helpers.empty());
    }
  }
}

TEST(RuntimeCallTable, StubsOfStubsCostNoCopies) {
  // Each stub calls the one before twice: two to the power of 20000 ways to the first helper.
  StkRuntimeCallTable table;
  table.AddHelper("bs_F0", "lsmul");
  for (int i = 1; i < 20000; ++i) {
    table.AddStub("bs_F" + std::to_string(i), "bs_F" + std::to_string(i - 1));
    table.AddStub("bs_F" + std::to_string(i), "bs_F" + std::to_string(i - 1));
  }
  EXPECT_EQ(Names(table, "bs_F19999"), std::vector<std::string>{"lsmul"});
}

}  // namespace
}  // namespace velkor
