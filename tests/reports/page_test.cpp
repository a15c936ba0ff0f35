#include <gtest/gtest.h>
#include <regex>

#include "reports/analysis.h"
#include "reports/html_text.h"
#include "reports/icicle_svg.h"
#include "reports/page_output.h"

namespace velkor::reports {
namespace {

using testing::Analysis;
using testing::Written;

std::string Page(Analysis& analysis) {
  return Written([&](ResultOutput& output) {
    WritePage(analysis.Result(), PlanStatements(analysis.graph.functions, analysis.bounds), output);
  });
}

// The picture of one number.
struct Drawn {
  Drawn(const AnalysisResult& result, uint32_t function,
        std::optional<uint64_t> stackSize = std::nullopt)
      : icicle(Take(result, function, stackSize)), layout(result, icicle), boxes(layout.Boxes(0)) {
    double bottom = layout.TopOf(0);
    for (const IcicleBox& box : boxes) {
      EXPECT_DOUBLE_EQ(box.top, bottom);
      bottom = box.top + box.height;
    }
    EXPECT_LE(bottom, layout.Height());
  }
  static Icicle Take(const AnalysisResult& result, uint32_t function,
                     std::optional<uint64_t> stackSize) {
    const IcicleEntry entry{.functions = std::span(&function, 1), .stackSize = stackSize};
    return TakeIcicle(result, std::span(&entry, 1));
  }
  uint64_t Bytes() const {
    uint64_t bytes = 0;
    for (const IcicleBox& box : boxes) {
      bytes += box.bytes;
    }
    return bytes;
  }

  Icicle icicle;
  IcicleLayout layout;
  std::vector<IcicleBox> boxes;
};

TEST(Icicle, BoxesHangBelowEachOtherAsHighAsTheirBytes) {
  Analysis analysis("main 100 -> a\na 200 -> b\nb 100 -> x\n? x\n");
  const AnalysisResult result = analysis.Result();
  const Drawn drawn(result, 0, 800);
  EXPECT_EQ(drawn.Bytes(), result.functions[0].known);
  ASSERT_EQ(drawn.boxes.size(), 4U);
  EXPECT_DOUBLE_EQ(drawn.boxes[1].height, 2 * drawn.boxes[0].height);
  EXPECT_EQ(drawn.boxes[3].kind, IcicleKind::kMissing);
  EXPECT_EQ(drawn.layout.Text(0, drawn.boxes[3]), "not known: unknown: [x]");
  EXPECT_DOUBLE_EQ(*drawn.layout.StackLine(0) - drawn.boxes[0].top, 8 * drawn.boxes[0].height);
  const std::string file =
      Written([&](ResultOutput& output) { WriteIcicleFile(drawn.layout, output); });
  EXPECT_NE(file.find(">200 a</text>"), std::string::npos);
  EXPECT_NE(file.find("class=\"stack\""), std::string::npos);
  EXPECT_EQ(file.find("var("), std::string::npos) << "not every drawing program knows it";
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
  const Drawn drawn(result, 0);
  const std::vector<IcicleBox>& boxes = drawn.boxes;
  EXPECT_EQ(drawn.Bytes(), 1000U + 4 * 150 + 30 + 500);
  ASSERT_EQ(boxes.size(), 4U);
  EXPECT_EQ(boxes[1].kind, IcicleKind::kRecursion);
  EXPECT_EQ(drawn.layout.Lines(0, boxes[1]), std::vector<std::string>{"600 ×4 a"});
  EXPECT_EQ(boxes[2].kind, IcicleKind::kSmall);
  EXPECT_EQ(drawn.layout.Lines(0, boxes[2]), std::vector<std::string>{"30 30 functions"});

  // Looked at through a window, each box is the one of the whole.
  const double inside = boxes[2].top + boxes[2].height / 2;
  const auto seen = drawn.layout.BoxesBetween(0, inside, inside + 1);
  ASSERT_EQ(seen.size(), 1U);
  EXPECT_DOUBLE_EQ(seen[0].top, boxes[2].top);
  EXPECT_EQ(seen[0].count, 30U);

  // Each is on its own where there is room for it.
  const IcicleLayout larger(result, drawn.icicle, {.boxesHeight = 100000});
  EXPECT_EQ(larger.Boxes(0).size(), 33U);
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
