#include <gtest/gtest.h>
#include <regex>

#include "core/bound_arithmetic.h"
#include "reports/analysis.h"
#include "reports/html_text.h"
#include "reports/icicle.h"
#include "reports/page_output.h"

namespace velkor::reports {
namespace {

using testing::Analysis;
using testing::Written;

std::string Page(Analysis& analysis) {
  return Written([&](ResultOutput& output) {
    GateStack stack;
    stack.name = "<rx>";
    stack.known = 120;
    stack.size = 100;
    stack.state = StackState::kOverBudget;
    WritePage(analysis.Result(), PlanStatements(analysis.graph.functions, analysis.bounds),
              std::span(&stack, 1), output);
  });
}

IcicleColumn ColumnOf(const AnalysisResult& result, uint32_t function,
                      std::optional<uint64_t> stackSize = std::nullopt) {
  const IcicleEntry entry{std::span(&function, 1), stackSize};
  const Icicle icicle = LayOutIcicle(result, std::span(&entry, 1));
  for (const IcicleBox& box : icicle.columns[0].boxes) {
    EXPECT_LE(box.top + box.height, icicle.height);
  }
  return icicle.columns[0];
}

uint64_t BytesOf(const IcicleColumn& column) {
  uint64_t bytes = 0;
  for (const IcicleBox& box : column.boxes) {
    bytes = AddBounded(bytes, box.bytes);
  }
  return bytes;
}

TEST(Icicle, BoxesHangBelowEachOtherAsHighAsTheirBytes) {
  Analysis analysis("main 100 -> a\na 200 -> b\nb 100 -> x\n? x\n");
  const AnalysisResult result = analysis.Result();
  const IcicleColumn column = ColumnOf(result, 0, 800);
  EXPECT_EQ(BytesOf(column), result.functions[0].known);
  ASSERT_EQ(column.boxes.size(), 4U);
  EXPECT_DOUBLE_EQ(column.boxes[1].height, 2 * column.boxes[0].height);
  EXPECT_DOUBLE_EQ(column.boxes[1].top, column.boxes[0].top + column.boxes[0].height);
  EXPECT_EQ(column.boxes[3].kind, IcicleKind::kMissing);
  EXPECT_EQ(column.boxes[3].text, "not known: unknown: [x]");
  EXPECT_DOUBLE_EQ(*column.stackLine - column.boxes[0].top, 8 * column.boxes[0].height);
}

// A group is one box with its activations; what is too small for a box shares one.
TEST(Icicle, GroupsAndSmallFunctionsAreOneBoxEach) {
  std::string text = "main 1000 -> a\na 100 -> b\nb 50 -> a f0\n";
  for (int i = 0; i < 30; ++i) {
    text += "f" + std::to_string(i) + " 1 -> f" + std::to_string(i + 1) + "\n";
  }
  Analysis analysis(text + "f30 500\n");
  analysis.Adjust(analysis.graph["a"], kNoMargin, 4);
  analysis.Compute();
  const AnalysisResult result = analysis.Result();
  const IcicleColumn column = ColumnOf(result, 0);
  EXPECT_EQ(BytesOf(column), 1000U + 4 * 150 + 30 + 500);
  ASSERT_EQ(column.boxes.size(), 4U);
  EXPECT_EQ(column.boxes[1].kind, IcicleKind::kRecursion);
  EXPECT_EQ(column.boxes[1].lines, std::vector<std::string>{"600 ×4 a"});
  EXPECT_EQ(column.boxes[2].kind, IcicleKind::kSmall);
  EXPECT_EQ(column.boxes[2].lines, std::vector<std::string>{"30 30 functions"});
}

TEST(Page, ShowsNamesAndObeysNone) {
  EXPECT_EQ(HtmlText("<a href='x'>\"&\x1B\n"), "&lt;a href=&#39;x&#39;&gt;&quot;&amp;\uFFFD\n");
  EXPECT_EQ(HtmlName("a\nb"), "<bdi>a b</bdi>");
  Analysis analysis("<b>&\"' 10 -> </script>\n</script> 20 -> " + std::string(5000, 'n') +
                    "\n\x1B]0;x 4\n");
  const std::string page = Page(analysis);
  EXPECT_EQ(page, Page(analysis));
  EXPECT_EQ(page.find("<b>&"), std::string::npos);
  EXPECT_EQ(page.find('\x1B'), std::string::npos);
  EXPECT_NE(
      page.find("<tr><td><bdi>&lt;rx&gt;</bdi></td><td class=\"n\">120</td><td class=\"n\">100"
                "</td><td class=\"n\">-20</td><td>over-budget</td></tr>"),
      std::string::npos);
  EXPECT_LT(page.find("</script>"), page.size());
  EXPECT_EQ(page.find("</script>"), page.rfind("</script>")) << "its own alone";
  // Nothing outside: the only targets are places in the page and an empty picture.
  const std::regex target("(src|href)=\"([^\"]*)\"|url\\(([^)]*)\\)");
  for (std::sregex_iterator match(page.begin(), page.end(), target), end; match != end; ++match) {
    const std::string to = (*match)[2].str() + (*match)[3].str();
    EXPECT_TRUE(to.starts_with('#') || to == "data:,") << to;
  }
  EXPECT_EQ(page.find("://"), std::string::npos);
}

TEST(Page, HoldsEveryTopLevelFunctionOnce) {
  std::string text;
  for (int i = 0; i < 40; ++i) {
    text += "entry" + std::to_string(100 + i) + " " + std::to_string(i / 4) + "\n";
  }
  Analysis analysis(text);
  const std::string page = Page(analysis);
  const std::string table = page.substr(page.find("<table class=\"functions\">"));
  for (int i = 0; i < 40; ++i) {
    const std::string cell = "<td><bdi>entry" + std::to_string(100 + i) + "</bdi></td>";
    EXPECT_NE(table.find(cell), std::string::npos) << cell;
    EXPECT_EQ(table.find(cell), table.rfind(cell));
  }
  EXPECT_NE(page.find("9, 4 functions</text>"), std::string::npos) << "a number that four share";
  Analysis empty("");
  EXPECT_NE(Page(empty).find("There are no functions."), std::string::npos);
}

}  // namespace
}  // namespace velkor::reports
