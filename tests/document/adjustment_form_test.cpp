#include "document/adjustment_form.h"

#include <gtest/gtest.h>

#include "support/computed_graph.h"

namespace velkor {
namespace {

struct Analysis : testing::ComputedGraph {
  using ComputedGraph::ComputedGraph;
  AdjustmentForm Form(std::string_view cName) { return {functions, (*this)[cName]}; }
};

std::string Names(const StkFunctionList& functions) {
  std::string names;
  for (const StkFunction* function : functions) {
    names += std::string(function->name) + " ";
  }
  return names;
}

// "margin 4, depth 3, callees _a _b", or "none".
std::string Text(const std::optional<StkAdjustment>& adjustment) {
  if (!adjustment) {
    return "none";
  }
  std::string text;
  text += adjustment->margin == kNoMargin ? "" : "margin " + std::to_string(adjustment->margin);
  text += adjustment->depth == kNoDepth ? "" : " depth " + std::to_string(adjustment->depth);
  text += adjustment->callees ? " callees " + Names(*adjustment->callees) : "";
  EXPECT_EQ(adjustment->line, 0u);
  return text;
}

TEST(AdjustmentForm, AcceptsAndRefusesNumbersAsStated) {
  constexpr std::string_view kTooBig = "W9464 Too big additional margin.\nThe limit is 65535.";
  struct Case {
    std::string margin;
    std::string depth;
    std::string_view message;  // empty: accepted
    AdjustmentForm::Field field = AdjustmentForm::Field::kMargin;
  };
  constexpr auto kDepth = AdjustmentForm::Field::kDepth;
  const Case cases[] = {
      {"", "", ""},
      {"0", "1", ""},
      {"65535", "4294967295", ""},
      {"0x", "0X", ""},
      {"65536", "", kTooBig},
      {"99999999999999999999999", "", kTooBig},
      {"12a", "", "W9462 Illegal value (a) for additional margin."},
      {" 1", "", "W9462 Illegal value ( ) for additional margin."},
      {"x", "y", "W9462 Illegal value (x) for additional margin."},
      {"", "0", "W9463 Illegal value (0) for recursion depth.", kDepth},
      {"0x1ソ", "", "W9462 Illegal value (ソ) for additional margin."},
      {"", "1%", "W9463 Illegal value (%) for recursion depth.", kDepth},
      {"1", "4294967296", kTooBig, kDepth},
  };
  // Not recursive: the depth is validated although it is disabled.
  Analysis analysis("f 1");
  for (const Case& entry : cases) {
    AdjustmentForm form = analysis.Form("f");
    form.SetMarginText(entry.margin);
    form.SetDepthText(entry.depth);
    const auto refusal = form.Validate();
    ASSERT_EQ(refusal.has_value(), !entry.message.empty()) << entry.margin << "|" << entry.depth;
    if (refusal) {
      ShowRefusal(*refusal, analysis.recorder.reporter);
      EXPECT_EQ(analysis.recorder.boxes.boxes.back().text, entry.message);
      EXPECT_EQ(refusal->field, entry.field);
    }
  }
}

TEST(AdjustmentForm, BuildsOnlyWhatIsStated) {
  struct Case {
    std::string function;
    std::string margin;
    std::string depth;
    std::string callee;
    std::string result;
  };
  const Case cases[] = {
      {"plain", "", "", "", "none"},
      {"plain", "0x10", "", "", "margin 16"},
      {"plain", "0x", "5", "", "none"},  // an empty prefix, and a depth that is disabled
      {"loop", "", "5", "", " depth 5"},
      {"loop", "2", "0x3", "plain", "margin 2 depth 3 callees _plain "},
      {"lib", "8", "", "", "none"},  // as it was shown
      {"lib", "9", "", "", "margin 9"},
      {"lib", "8", "", "plain", "margin 8 callees _plain "},
      {"preset", "6", "", "", "none"},
      {"plain", "", "2", "plain", " depth 2 callees _plain "},  // recursive by its callee
  };
  Analysis analysis("plain 1\nloop 2 -> loop\n? lib\npreset 3");
  analysis.functions.SetLibrarySize(analysis["lib"], 8);
  analysis["preset"].SetFixedExtra();
  for (const Case& entry : cases) {
    AdjustmentForm form = analysis.Form(entry.function);
    form.SetMarginText(entry.margin);
    form.SetDepthText(entry.depth);
    if (!entry.callee.empty()) {
      form.Add(analysis[entry.callee]);
    }
    EXPECT_FALSE(form.Validate());
    EXPECT_EQ(Text(form.BuildAdjustment()), entry.result)
        << entry.function << " " << entry.margin << "|" << entry.depth;
  }
}

TEST(AdjustmentForm, StartsFromWhatIsInForceAndResets) {
  Analysis analysis("loop 2 -> loop => b\na 1 -> b\nb 1");
  analysis.Adjust("loop", kNoMargin, 7);
  AdjustmentForm form = analysis.Form("loop");
  EXPECT_EQ(form.MarginText() + "|" + form.DepthText(), "|7");
  EXPECT_EQ(Text(form.BuildAdjustment()), " depth 7 callees _b ");
  form.Reset();
  EXPECT_EQ(form.DepthText() + Names(form.AddedCallees()), "");
  EXPECT_TRUE(form.RecursionEnabled()) << "by a callee of its own";
  EXPECT_EQ(Text(form.BuildAdjustment()), "none");
  EXPECT_EQ(Names(analysis["loop"].extraCallees), "_b ") << "nothing reaches the function";

  // A callee that is stated although it is called directly is not shown, and stays unless all go.
  analysis.functions.SetDirectCallees(analysis["a"], {&analysis["b"]});
  AdjustmentForm direct = analysis.Form("a");
  EXPECT_TRUE(direct.AddedCallees().empty());
  direct.SetMarginText("4");
  EXPECT_EQ(Names(direct.BuildAdjustment()->directCallees), "_b ");
  direct.SetMarginText("");
  ASSERT_TRUE(direct.BuildAdjustment()) << "else it would be cancelled";
  EXPECT_EQ(Names(direct.BuildAdjustment()->directCallees), "_b ");
  direct.DeleteAll();
  EXPECT_FALSE(direct.BuildAdjustment());
}

}  // namespace
}  // namespace velkor
