#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "core/adjustments.h"
#include "document_host.h"

namespace velkor {
namespace {

using testing::DocumentHost;

class RoundTrip : public DocumentHost {
 protected:
  uint32_t Below(uint32_t limit) { return static_cast<uint32_t>(random_() % limit); }
  bool OneIn(uint32_t n) { return Below(n) == 0; }

  // Two modules with functions of their own, a static one of the same name in each, and calls
  // that may be indirect, recursive or of functions that nothing defines.
  void PutRandomProject() {
    for (const std::string module : {"a", "b"}) {
      std::vector<std::string> functions;
      for (uint32_t i = 0; i < 1 + Below(4); ++i) {
        functions.push_back(RandomFunction(module + std::to_string(i)));
      }
      functions.push_back("static " + RandomFunction("both"));
      PutModule(module, functions);
    }
    PutProject({"a", "b"});
  }

  std::string RandomFunction(const std::string& name) {
    static const char* const kCalled[] = {"a0", "a1", "b0", "b1", "both", "x", "y"};
    std::string line = (OneIn(3) ? "indirect " : "") + name + " " + std::to_string(Below(100));
    std::vector<std::string> called;
    for (uint32_t i = Below(4); i > 0; --i) {
      const std::string callee = kCalled[Below(std::size(kCalled))];
      if (std::find(called.begin(), called.end(), callee) == called.end()) {
        called.push_back(callee);
        line += " " + callee;
      }
    }
    return line;
  }

  void Adjust(StkFunction& function, bool withCallees) {
    StkAdjustment adjustment;
    StkFunctionList callees = function.extraCallees;
    for (const auto& callee : document.FunctionTable()->Functions()) {
      if (withCallees && OneIn(5) && !function.CallsDirectly(*callee)) {
        InsertByName(callees, *callee, host.codePage);
      }
    }
    if (!callees.empty()) {
      adjustment.SetCallees(callees, host.codePage);
    }
    if (OneIn(2)) {
      adjustment.margin = Below(OneIn(4) ? 65536 : 50);
    }
    if (!withCallees && function.Is(FN_RECURSIVE) && OneIn(2)) {
      adjustment.depth = 1 + Below(4);
    }
    if (callees.empty() && adjustment.margin == kNoMargin && adjustment.depth == kNoDepth) {
      adjustment.margin = 1;
    }
    ASSERT_TRUE(document.AdjustFunction(function, adjustment));
  }

  // Callees first: a depth holds only where the graph they make is recursive.
  void AdjustSome() {
    for (const bool withCallees : {true, false}) {
      for (const auto& function : document.FunctionTable()->Functions()) {
        if (OneIn(3)) {
          Adjust(*function, withCallees);
        }
      }
    }
    Finish();
  }

  std::string Results() {
    std::string text;
    for (const auto& function : document.FunctionTable()->Functions()) {
      text += std::string(function->name) + " " + std::to_string(function->totalStackSize) + " " +
              std::to_string(function->flags) + " " + std::to_string(function->chainCount) + "\n";
    }
    return text;
  }

  std::string Roots() {
    std::string text;
    for (const StkFunction* root : document.RootList()->Functions()) {
      text += std::to_string(root->index) + " ";
    }
    return text;
  }

  std::string Saved() { return host.files.Get(kSystemFile).value_or("none"); }

 private:
  std::mt19937 random_{7};
};

// Which function of a closed cycle is top-level depends on the marks of the computation before, and
// the totals within the cycle on that. So a session's results come back where its top-level
// functions do, and those of one fresh analysis in every other one.
TEST_F(RoundTrip, ASavedAnalysisComesBackAndIsSavedAsItWas) {
  int adjusted = 0;
  int sameRoots = 0;
  for (int project = 0; project < 1000; ++project) {
    host.files.Remove(kSystemFile);
    PutRandomProject();
    OpenAndFinish();
    AdjustSome();
    document.SaveSystemFile();
    Finish();
    const std::string saved = Saved();
    const std::string roots = Roots();
    std::string results = Results();
    adjusted += document.FunctionTable()->AdjustedCount() != 0 ? 1 : 0;
    for (int fresh = 0; fresh < 2; ++fresh) {
      document.Recalculate();
      Finish();
      if (fresh == 1 || Roots() == roots) {
        ASSERT_EQ(Results(), results) << project << "\n" << saved;
        sameRoots += fresh == 0 ? 1 : 0;
      }
      results = Results();
      document.SaveSystemFile();
      Finish();
      ASSERT_EQ(Saved(), saved) << project;
    }
  }
  EXPECT_GT(adjusted, 800);
  EXPECT_GT(sameRoots, 500);
}

}  // namespace
}  // namespace velkor
