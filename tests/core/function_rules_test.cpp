#include <gtest/gtest.h>

#include "core/adjustments.h"
#include "core/bounds.h"
#include "core/function_text.h"
#include "core/recompute.h"
#include "support/recorder.h"

namespace velkor {
namespace {

constexpr uint32_t kLargeLimit = 0x7FFFFFFF;

// Functions of an input with a larger limit and no "_" in its symbols: main calls _run.
class OtherRules : public ::testing::Test {
 protected:
  OtherRules() {
    main_.flags |= FN_GLOBAL;
    run_.flags |= FN_GLOBAL;
    functions_.AddCallName(main_, "_run");
    functions_.ResolveAllCalls();
  }
  void Compute(uint32_t frame) {
    main_.frameSize = frame;
    run_.frameSize = 2000000000;
    Recompute(functions_, roots_, true, nullptr, nullptr, recorder_.reporter);
    bounds_.Update();
  }

  const CodePage page_ = CodePage::Utf8();
  testing::Recorder recorder_{page_};
  StkFunctionTable functions_{page_, {.sizeLimit = kLargeLimit, .underscored = false}};
  StkFileTable files_{page_};
  StkFunction& main_ = functions_.AddDefined("main", files_.Intern("x.c"));
  StkFunction& run_ = functions_.AddDefined("_run", files_.Intern("x.c"));
  StkRootList roots_;
  StkBounds bounds_{functions_};
};

TEST_F(OtherRules, SizesGoUpToTheLimitOfTheTable) {
  Compute(kLargeLimit - 2000000000);
  EXPECT_EQ(TotalSizeText(main_), "2147483647");
  EXPECT_EQ(bounds_.State(main_), BoundState::kBounded);
  Compute(kLargeLimit - 2000000000 + 1);
  EXPECT_EQ(TotalSizeText(main_), "SIZEOVER");
  EXPECT_EQ(bounds_.State(main_), BoundState::kOver);
  EXPECT_EQ(bounds_.Known(main_), uint64_t{kLargeLimit} + 1);
  StkAdjustment margin;
  margin.margin = 1;
  AdjustFunction(functions_, roots_, run_, margin, recorder_.reporter);
  ASSERT_EQ(recorder_.boxes.boxes.size(), 1U);
  EXPECT_NE(recorder_.boxes.boxes[0].text.find("exceeds 2147483647"), std::string::npos);
}

TEST_F(OtherRules, SymbolsAreTheNames) {
  EXPECT_EQ(FunctionSpecName(run_, page_), "_run");
  EXPECT_EQ(functions_.FindBySpecName("", "_run", false), &run_);
  EXPECT_EQ(functions_.FindBySpecName("", "main", true), &main_);
  EXPECT_EQ(functions_.FindBySpecName("", "run", false), nullptr);
}

}  // namespace
}  // namespace velkor
