#include "readers/tarn/runtime_call_table.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace velkor {
namespace {

using Names = std::vector<std::string>;

Names HelpersOf(StkRuntimeCallTable& table, const std::string& label) {
  Names names;
  for (const uint32_t helper : table.Helpers(label)) {
    names.emplace_back(table.HelperName(helper));
  }
  return names;
}

// A call of a stub hands on what the stub calls so far, each helper once.
TEST(RuntimeCallTable, StubsHandOnWhatTheyCallSoFar) {
  StkRuntimeCallTable table;
  table.AddStub("_f", "bs_F1");  // not met yet
  EXPECT_FALSE(table.CallsHelpers("_f"));
  table.AddHelper("bs_F1", "fadd");
  table.AddHelper("bs_F1", "cprep2");
  table.AddHelper("bs_F1", "cprep2");
  table.AddHelper("_f", "fmul");
  table.AddStub("_f", "bs_F1");
  table.AddHelper("bs_F1", "lsmul");
  table.AddHelper("_f", "fadd");
  EXPECT_EQ(HelpersOf(table, "_f"), (Names{"fmul", "fadd", "cprep2"}));
  EXPECT_EQ(table.Cprep2Count("bs_F1"), 2U);
  EXPECT_EQ(table.Cprep2Count("_f"), 1U);
  table.AddStub("bs_F1", "bs_F1");
  EXPECT_EQ(HelpersOf(table, "bs_F1"), (Names{"fadd", "cprep2", "lsmul"}));
  table.AddStub("_f", "bs_F1");
  EXPECT_EQ(HelpersOf(table, "_f"), (Names{"fmul", "fadd", "cprep2", "lsmul"}));
  EXPECT_EQ(table.Cprep2Count("_f"), 2U);
  EXPECT_EQ(HelpersOf(table, "_g"), Names());
}

TEST(RuntimeCallTable, StubsOfStubsCostNoCopies) {
  // Each stub calls the one before twice: two to the power of 20000 ways to the first helper.
  StkRuntimeCallTable table;
  table.AddHelper("bs_F0", "lsmul");
  for (int i = 1; i < 20000; ++i) {
    table.AddStub("bs_F" + std::to_string(i), "bs_F" + std::to_string(i - 1));
    table.AddStub("bs_F" + std::to_string(i), "bs_F" + std::to_string(i - 1));
  }
  EXPECT_EQ(HelpersOf(table, "bs_F19999"), Names{"lsmul"});
}

}  // namespace
}  // namespace velkor
