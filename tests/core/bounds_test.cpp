#include "core/bounds.h"

#include <gtest/gtest.h>
#include <string>

#include "core/adjustments.h"
#include "core/bound_notes.h"
#include "core/function_text.h"
#include "support/computed_graph.h"

namespace velkor {
namespace {

using testing::ComputedGraph;

struct Bounded : ComputedGraph {
  using ComputedGraph::ComputedGraph;

  StkBounds& Updated() {
    bounds.Update();
    return bounds;
  }
  // "bounded 490", "unbounded 45 unknown recursion".
  std::string Of(std::string_view cName) {
    const StkFunction& function = (*this)[cName];
    std::string text(BoundStateName(Updated().State(function)));
    text += " " + std::to_string(bounds.Known(function));
    for (const ReasonKind kind : kReasonKinds) {
      if (bounds.Reasons(function).Has(kind)) {
        text += " " + std::string(ReasonName(kind));
      }
    }
    return text;
  }
  // "nested-depths:3 ..." with the number of the function.
  std::string Notes() {
    std::string text;
    for (const StkNote& note : BoundNotes(functions, Updated(), recorder.reporter.Messages())) {
      text += std::string(note.rule) + ":" + std::to_string(note.function.value()) + " " +
              note.text + "\n";
    }
    return text;
  }

  StkBounds bounds{functions};
};

// So many functions that a second thread finds their components, before the bounds are asked for.
TEST(Bounds, WhatASecondThreadHasFoundIsForgottenWithTheCalls) {
  std::string lines = "main 10 -> f0\n";
  for (int i = 0; i < 5000; ++i) {
    lines += "f" + std::to_string(i) + " 8 -> leaf\n";
  }
  lines += "leaf 20\nheavy 900\nother 5 -> ring\nring 30 -> back\nback 40 -> ring\n";
  for (const size_t threads : {1U, 2U}) {
    Bounded graph(lines, CodePage::Utf8(), threads);
    StkAdjustment stated;
    stated.callees = StkFunctionList{&graph["heavy"]};
    AdjustFunction(graph.functions, graph.roots, graph["leaf"], stated, graph.recorder.reporter);
    EXPECT_EQ(graph.Of("main"), "bounded 938");
    EXPECT_EQ(graph.Of("ring"), "unbounded 40 recursion");
    for (const bool known : {false, true}) {
      stated.callees = StkFunctionList{&graph["f1"]};  // a recursion comes about
      if (known) {
        stated.callees = StkFunctionList();
      }
      AdjustFunction(graph.functions, graph.roots, graph["leaf"], stated, graph.recorder.reporter);
      EXPECT_EQ(graph.Of("main"), known ? "bounded 38" : "unbounded 38 recursion");
    }
  }
}

TEST(Bounds, ARingOfTwoEntriesHasTheSameBoundsInEveryOrder) {
  for (const char* text : {"main 10 -> a\na 100 -> b\nb 20 -> a\nisr 5 -> b\n",
                           "isr 5 -> b\nb 20 -> a\na 100 -> b\nmain 10 -> a\n"}) {
    Bounded graph(text);
    EXPECT_EQ(graph.Of("main"), "unbounded 110 recursion");
    graph.Adjust("a", kNoMargin, 2);
    EXPECT_EQ(graph.Of("main"), "bounded 250");
    EXPECT_EQ(graph.Of("isr"), "bounded 265");
    graph.Adjust("b", kNoMargin, 2);
    EXPECT_EQ(graph.Of("main"), "bounded 490");
    EXPECT_EQ(graph.Of("isr"), "bounded 485");
    EXPECT_FALSE(graph.bounds.IsComplete(graph["main"]) && graph.bounds.IsComplete(graph["isr"]));
    EXPECT_EQ(graph.bounds.Groups().front().activations, 4u);
    EXPECT_EQ(graph.Notes().substr(0, graph.Notes().find(':')), "nested-depths");
    graph.Adjust("b", kNoMargin, 1);
    EXPECT_EQ(graph.Of("isr"), "bounded 265");
    EXPECT_EQ(graph.Notes(), "");
  }
}

// What is missing, what takes it away again, and what the function's caller is left with.
TEST(Bounds, EachReasonGoesWithWhatItMisses) {
  struct Case {
    uint32_t flags;
    const char* missing;
    const char* marginOf7;
    const char* callee;
  };
  const uint32_t defined = FN_DEFINED;
  for (const Case& each : {
           Case{defined, "bounded 5", "bounded 12", "bounded 8"},
           Case{0, "unbounded 5 unknown", "bounded 12", "unbounded 8 unknown"},
           Case{defined | FN_SIZE_UNKNOWN, "unbounded 5 unknown", "bounded 12",
                "unbounded 8 unknown"},
           Case{defined | FN_INDIRECT_CALL, "unbounded 5 indirect", "bounded 12", "bounded 8"},
           Case{defined | FN_HIDDEN_CALL, "unbounded 5 hidden-call", "bounded 12", "bounded 8"},
           Case{defined | FN_DYNAMIC_FRAME, "unbounded 5 dynamic", "bounded 12",
                "unbounded 8 dynamic"},
           Case{defined | FN_DYNAMIC_FRAME | FN_INDIRECT_CALL, "unbounded 5 indirect dynamic",
                "unbounded 12 indirect", "unbounded 8 dynamic"},
       }) {
    Bounded graph("caller 1 -> f\nf 4\ncallee 3\n");
    graph["f"].flags = each.flags;
    EXPECT_EQ(graph.Of("caller"), each.missing);
    graph.Adjust("f", 7);
    EXPECT_EQ(graph.Of("caller"), each.marginOf7);
    StkAdjustment callees;
    callees.callees = StkFunctionList{&graph["callee"]};
    AdjustFunction(graph.functions, graph.roots, graph["f"], callees, graph.recorder.reporter);
    EXPECT_EQ(graph.Of("caller"), each.callee);
  }
}

TEST(Bounds, OwnSizeTakesTheStatedMarginElseTheLibrarySize) {
  Bounded graph("main 1 -> f g\nf 4\n? g\n");
  graph["f"].SetFixedExtra();
  graph.SetLibrarySize("g", 9);
  EXPECT_EQ(graph.Of("f"), "bounded 10");
  EXPECT_EQ(graph.Of("main"), "bounded 11");
  graph.Adjust("f", 20);
  EXPECT_EQ(graph.Of("f"), "bounded 24");
  graph.Adjust("g", kNoMargin, 3);  // its total forgets the library size, its bound does not
  EXPECT_EQ(graph.Of("g"), "bounded 9");
  graph["f"].frameSize = kOverSize;
  graph.Adjust("f", 20);
  EXPECT_EQ(graph.Of("main"), "over 65557");
}

// The limit divides what has a bound, and never takes away that something is missing.
TEST(Bounds, TheLimitItselfIsNotOverIt) {
  const char* const states[][2] = {{"bounded 65534", "unbounded 65534 unknown"},
                                   {"bounded 65535", "unbounded 65535 unknown"},
                                   {"over 65536", "unbounded 65536 unknown"}};
  for (uint32_t i = 0; i < 3; ++i) {
    Bounded graph("main 65530 -> f\nisr 65530 -> f x\nf 4\n? x\n");
    graph.Adjust("f", i);
    EXPECT_EQ(graph.Of("main"), states[i][0]);
    EXPECT_EQ(graph.Of("isr"), states[i][1]);
  }
}

TEST(Bounds, AFunctionMayBeItsOwnExtraCallee) {
  Bounded graph("main 1 -> f\nf 4 => f\n");
  EXPECT_EQ(graph.Of("main"), "unbounded 5 recursion");
  graph.Adjust("f", 2, 3);
  EXPECT_EQ(graph.Of("main"), "bounded 19");
}

TEST(BoundNotes, NameAdjustmentsThatLeaveOutWhatTheBoundNeeds) {
  Bounded graph("main 1 -> i r\ni 1\nr 1 -> x r\n? x\nd 1\n");
  graph["i"].flags |= FN_INDIRECT_CALL;
  graph["d"].flags |= FN_HIDDEN_CALL | FN_DYNAMIC_FRAME;
  EXPECT_EQ(graph.Notes(), "");
  for (const char* name : {"i", "r", "x", "d"}) {
    graph.Adjust(name, kNoMargin);
  }
  EXPECT_EQ(graph.Notes(),
            "empty-adjustment:1 i is adjusted, but the adjustment leaves out what its bound "
            "needs: what it calls indirectly (CALL= or ADD=).\n"
            "empty-adjustment:2 r is adjusted, but the adjustment leaves out what its bound "
            "needs: a recursion depth (RECTIME=).\n"
            "empty-adjustment:3 [x] is adjusted, but the adjustment leaves out what its bound "
            "needs: its size (ADD=).\n"
            "empty-adjustment:4 d is adjusted, but the adjustment leaves out what its bound "
            "needs: its size (ADD=), the call in its code that is not listed (CALL= or ADD=).\n");
  graph.Adjust("d", 0);
  graph["d"].flags &= ~FN_HIDDEN_CALL;
  graph.Adjust("i", 0);
  graph.Adjust("r", kNoMargin, 2);
  graph.Adjust("x", 0);
  EXPECT_EQ(graph.Notes(), "");
  EXPECT_EQ(graph.Of("main"), "bounded 3");
}

}  // namespace
}  // namespace velkor
