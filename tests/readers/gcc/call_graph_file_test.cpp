#include "readers/gcc/call_graph_file.h"

#include <gtest/gtest.h>

namespace velkor {
namespace {

using Frame = CallGraphNode::Frame;
using Shape = CallGraphNode::Shape;

// What a place says, as the compiler writes it.
std::string Text(const SourcePlace& place) {
  return std::string(place.file) + ":" + std::to_string(place.line) + ":" +
         std::to_string(place.column);
}

std::string Faults(const CallGraphFile& file) {
  std::string text;
  for (const CallGraphFile::Fault& fault : file.faults) {
    text += std::to_string(fault.line) + " " + std::string(TextOf(fault.fault)) + "\n";
  }
  return text;
}

constexpr std::string_view kWhole =
    R"(graph: { title: "lib/ring.c"
node: { title: "lib/ring.c:wrap" label: "wrap\nlib/ring.c:3:12\n8 bytes (static)\n0 dynamic objects" }
node: { title: "*ring_put" label: "ring_put\nlib/ring.c:9:5\n24 bytes (dynamic)\n2 dynamic objects\n copy lib/ring.c:10:8\n (null) lib/ring.c:11:9" }
edge: { sourcename: "*ring_put" targetname: "lib/ring.c:wrap" label: "lib/ring.c:12:3" }
node: { title: "memcpy" label: "__builtin_memcpy\n<built-in>" shape : ellipse }
edge: { sourcename: "*ring_put" targetname: "memcpy" }
node: { title: "__indirect_call" label: "Indirect Call Placeholder" shape : ellipse }
edge: { sourcename: "*ring_put" targetname: "__indirect_call" label: "lib/ring.c:14:7" }
node: { title: "sum" label: "int sum(int, ...)\nlib/ring.c:20:5\n4096 bytes (dynamic,bounded)\n0 dynamic objects" }
edge: { sourcename: "lib/ring.c:wrap" targetname: "sum" label: "lib/ring.c:4:9" }
node: { title: "total" label: "total\nlib/ring.c:30:5" shape : triangle }
edge: { sourcename: "total" targetname: "sum" }
}
)";

TEST(CallGraphFile, NodesAndEdges) {
  const CallGraphFile file = ReadCallGraph(kWhole);
  EXPECT_EQ(Faults(file), "");
  EXPECT_TRUE(file.isWhole && file.title == "lib/ring.c");
  ASSERT_EQ(file.nodes.size(), 6U);
  const CallGraphNode& wrap = file.nodes[0];
  EXPECT_TRUE(wrap.isQualified && wrap.symbol == "wrap" && wrap.name == "wrap");
  EXPECT_TRUE(wrap.bytes == 8 && wrap.frame == Frame::kStatic && wrap.textLine == 2);
  EXPECT_EQ(Text(wrap.place), "lib/ring.c:3:12");

  const CallGraphNode& put = file.nodes[1];
  EXPECT_TRUE(!put.isQualified && put.symbol == "ring_put" && put.frame == Frame::kDynamic);
  ASSERT_EQ(put.dynamicObjectCount, 2U);
  EXPECT_EQ(file.dynamicObjects[put.firstDynamicObject].variable, "copy");
  EXPECT_EQ(file.dynamicObjects[put.firstDynamicObject + 1].variable, "(null)");
  EXPECT_EQ(Text(file.dynamicObjects[put.firstDynamicObject + 1].place), "lib/ring.c:11:9");

  EXPECT_EQ(file.nodes[2].shape, Shape::kEllipse);
  EXPECT_EQ(Text(file.nodes[2].place), "<built-in>:0:0");
  EXPECT_EQ(file.nodes[3].title, CallGraphFile::kIndirectCall);
  EXPECT_EQ(Text(file.nodes[3].place), ":0:0");
  EXPECT_TRUE(file.nodes[4].bytes == 4096 && file.nodes[4].frame == Frame::kBounded);
  EXPECT_EQ(file.nodes[5].shape, Shape::kTriangle);

  ASSERT_EQ(file.edges.size(), 5U);
  EXPECT_EQ(file.edges[0].place, "lib/ring.c:12:3");
  EXPECT_TRUE(file.edges[1].target == "memcpy" && file.edges[1].place.empty());
  EXPECT_EQ(file.edges[2].sourceNode, 1U);
  EXPECT_EQ(file.edges[3].sourceNode, 0U);  // its node is not the last one
  EXPECT_EQ(file.edges[4].sourceNode, 5U);
  EXPECT_EQ(file.edges[4].textLine, 12U);
}

// Only the end of the text may be taken from a whole file, and its last line feed.
TEST(CallGraphFile, IsNeverWholeWhereItIsCut) {
  for (size_t length = 0; length + 1 < kWhole.size(); ++length) {
    const std::string cut(kWhole.substr(0, length));
    EXPECT_FALSE(ReadCallGraph(cut).isWhole) << cut;
  }
  EXPECT_TRUE(ReadCallGraph(kWhole.substr(0, kWhole.size() - 1)).isWhole);
  std::string lineFeeds;
  for (const char c : kWhole) {
    lineFeeds += c == '\n' ? "\r\n" : std::string(1, c);
  }
  const CallGraphFile windows = ReadCallGraph(lineFeeds);
  EXPECT_TRUE(windows.isWhole && windows.nodes.size() == 6 && windows.edges.size() == 5);
}

struct Label {
  std::string_view label;
  std::string_view name;
  std::string_view place;
  uint64_t bytes;
  uint32_t objects = 0;
};

// Nothing is escaped: a path of Windows holds what parts the label.
TEST(CallGraphFile, LabelsAreReadFromBothEnds) {
  constexpr Label kLabels[] = {
      {R"(f\nC:\new\n.c:1:2\n8 bytes (static)\n0 dynamic objects)", "f", R"(C:\new\n.c:1:2)", 8},
      {R"(f\nC:\n 1.c:1:2\n8 bytes (dynamic)\n1 dynamic objects\n b C:\w\nu.c:3:4)", "f",
       R"(C:\n 1.c:1:2)", 8, 1},
      {R"()\nv.cpp:2:5\n8 bytes (static))", ")", "v.cpp:2:5", 8},
      {R"(T f(T) [with T = "x"]\na b".c:1:2\n8 bytes (static)\n0 dynamic objects)",
       R"(T f(T) [with T = "x"])", R"(a b".c:1:2)", 8},
      {R"(f\na:1.c:7:9\n18446744073709551616 bytes (static)\n0 dynamic objects)", "f", "a:1.c:7:9",
       INT64_MAX},
      {R"(f\nx.c:99999999999:1\n0 bytes (static))", "f", "x.c:4294967295:1", 0},
  };
  for (const Label& one : kLabels) {
    const std::string text = "graph: { title: \"x.c\"\nnode: { title: \"f\" label: \"" +
                             std::string(one.label) + "\" }\n}\n";
    const CallGraphFile file = ReadCallGraph(text);
    EXPECT_EQ(Faults(file), "") << one.label;
    ASSERT_EQ(file.nodes.size(), 1U);
    EXPECT_EQ(file.nodes[0].name, one.name);
    EXPECT_EQ(Text(file.nodes[0].place), one.place);
    EXPECT_EQ(file.nodes[0].bytes, one.bytes) << one.label;
    EXPECT_EQ(file.nodes[0].dynamicObjectCount, one.objects);
  }
}

TEST(CallGraphFile, TitlesMayHoldBlanksAndQuotes) {
  const CallGraphFile file = ReadCallGraph(
      "graph: { title: \"my \"own\" d.c\"\n"
      "node: { title: \"my \"own\" d.c:*f g\" label: \"f\\nd.c:1:1\\n0 bytes (static)\" }\n"
      "edge: { sourcename: \"my \"own\" d.c:*f g\" targetname: \"a\"b\" label: \"my \"own\" "
      "d.c:2:3\" }\n"
      "}\n");
  EXPECT_EQ(Faults(file), "");
  EXPECT_EQ(file.nodes.at(0).symbol, "f g");
  EXPECT_TRUE(file.nodes[0].isQualified);
  EXPECT_EQ(file.edges.at(0).target, "a\"b");
  EXPECT_EQ(file.edges[0].place, "my \"own\" d.c:2:3");
  EXPECT_EQ(SymbolOf(file, "my \"own\" d.c:*x"), "x");
  EXPECT_EQ(SymbolOf(file, "your d.c:x"), "your d.c:x");
}

struct Faulty {
  std::string_view text;
  std::string_view faults;
};

TEST(CallGraphFile, SaysWhatItCouldNotRead) {
  constexpr std::string_view kFunction =
      "node: { title: \"f\" label: \"f\\nx.c:1:1\\n0 bytes (static)\" }\n";
  constexpr Faulty kCases[] = {
      {"", "0 it does not end with the line \"}\"\n"},
      {"@\nedge: { sourcename: \"f\" }\n\n",
       "2 line of no known form\n3 line of no known form\n"
       "4 line of no known form\n"
       "4 it does not end with the line \"}\"\n"},
      {"@}\n#", "3 line after the end of the graph\n"},
      {"@#edge: { sourcename: \"g\" targetname: \"f\" }\n}\n",
       "3 call from a function that the file does not define\n"},
      {"@#node: { title: \"g\" label: \"g\\nx.c:1:1\" }\n}\n", "3 function without a size\n"},
      {"@node: { title: \"f\" label: \"f\\nx.c:1:1\" }\nodd\n"
       "node: { title: \"g\" label: \"g\\nx.c:2:1\" }\n}\n",
       "2 no function has a size (compile with -fcallgraph-info=su,da)\n"
       "3 line of no known form\n"},
      {"@node: { title: \"f\" label: \"f\\nx.c:1:1\\n-8 bytes (static)\" }\n}\n",
       "2 line of no known form\n"},
      {"@node: { title: \"f\" label: \"f\\nx.c:1:1\\n8 bytes (elastic)\" }\n}\n",
       "2 line of no known form\n"},
      {"@node: { title: \"f\" label: \"f\\nx.c:1:1\" shape : box }\n}\n",
       "2 line of no known form\n"},
      {"@node: { title: \"f\" label: \"f\\nx.c:1:1\\n8 bytes (dynamic)\\n2 dynamic objects\\n a "
       "x.c:1:1\" }"
       "\n}\n",
       "2 the dynamic objects are not as many as stated\n"},
  };
  for (const Faulty& one : kCases) {
    std::string text;
    for (const char c : one.text) {
      text += c == '@'   ? "graph: { title: \"x.c\"\n"
              : c == '#' ? std::string(kFunction)
                         : std::string(1, c);
    }
    EXPECT_EQ(Faults(ReadCallGraph(text)), one.faults) << text;
  }
  const CallGraphFile headless = ReadCallGraph(std::string(kFunction) + "}\n");
  EXPECT_EQ(Faults(headless), "1 it does not begin with the line \"graph\"\n");
  EXPECT_EQ(headless.nodes.size(), 1U);
}

}  // namespace
}  // namespace velkor
