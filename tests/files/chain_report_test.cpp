#include "files/chain_report.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "core/function_text.h"
#include "core/recompute.h"
#include "support/graph.h"
#include "support/recorder.h"
#include "support/test_host.h"

namespace velkor {
namespace {

using testing::Graph;
using Format = StkChainReport::Format;

// How a report draws any graph, the graph fuzzer checks against a drawing that recurses.
constexpr char kReportPath[] = "C:\\p\\chains.txt";
const std::string kHeading = "Function,Total Stack Size,Frame Size,Adjustment Information\r\n";

// Functions, computed, and where their reports go.
struct Reports {
  explicit Reports(std::string_view graphText, CodePage page = CodePage::Utf8())
      : graph(graphText, page), host(page), recorder(host.codePage) {
    Compute();
  }
  void Compute() { Recompute(graph.functions, roots, true, nullptr, nullptr, recorder.reporter); }

  std::string Write(
      Format format, ChainMode mode, std::string_view start = "main",
      WorkEnd end = WorkEnd::kCompleted,
      const StkChainReport::AfterChain& after = [](uint32_t) { return true; }) {
    StkChainReport report(format, kReportPath, host.host, recorder.messages);
    EXPECT_TRUE(report.Open());
    const WorkEnd ended = report.Write(graph[start], mode, after);
    EXPECT_EQ(end, ended);
    if (ended == WorkEnd::kFailed) {
      report.PostFailure(recorder.reporter);
      recorder.queue.Drain();
    }
    return host.files.Get(kReportPath).value_or("no file");
  }
  std::string Text(ChainMode mode, std::string_view start = "main") {
    return Write(Format::kText, mode, start);
  }
  std::string Csv(ChainMode mode, std::string_view start = "main") {
    return Write(Format::kCsv, mode, start);
  }
  std::string LastWarning() { return recorder.log.lines.back(); }

  Graph graph;
  testing::TestHost host;
  testing::Recorder recorder;
  StkRootList roots;
};

TEST(ChainReport, TwoCalleesOfTheSameTotal) {
  Reports reports("main 4\nstatic f 6\ng 6\nh 2");
  reports.graph.functions.SetAllCalls({.callees = {1, 2, 3}, .ends = {3, 3, 3, 3}});
  reports.graph["f"].file = &reports.graph.files.Intern("C:\\p\\a.c");
  reports.Compute();
  EXPECT_EQ("main(10,4)+--a.c#f(6,6)\r\n          +--g(6,6)\r\n",
            reports.Text(ChainMode::kMaximum));
  EXPECT_EQ(kHeading + "main,10,4,0,a.c#f,6,6,0\r\nmain,10,4,0,g,6,6,0\r\n",
            reports.Csv(ChainMode::kMaximum));
  EXPECT_EQ("main(10,4)+--a.c#f(6,6)\r\n          +--g(6,6)\r\n          +--h(2,2)\r\n",
            reports.Text(ChainMode::kAll));
  EXPECT_EQ("h(2,2)\r\n", reports.Text(ChainMode::kAll, "h"));
  EXPECT_EQ(kHeading + "h,2,2,0\r\n", reports.Csv(ChainMode::kAll, "h"));
}

TEST(ChainReport, DoubleByteNamesAreIndentedByTheirBytes) {
  const std::string name = "\x83\x5C\x83\x5C";
  Reports reports(name + " 4 -> f g\nf 6\ng 6", CodePage::ShiftJis());
  EXPECT_EQ(name + "(10,4)+--f(6,6)\r\n          +--g(6,6)\r\n",
            reports.Text(ChainMode::kAll, name));
}

TEST(ChainReport, LongLinesWrapOrFail) {
  const std::string w9451 =
      "W9451 Number of characters in one line reached limit (5119) in output.";
  // "main,7,4,0," and the callee's item fill a CSV line to the last character.
  for (const size_t excess : {0u, 1u}) {
    const std::string callee(5119 - 11 - 6 + excess, 'n');
    Reports reports("main 4 -> " + callee + " o\n" + callee + " 3\no 3");
    const std::string row = "main,7,4,0," + callee + ",3,3,0";
    if (excess == 0) {
      EXPECT_TRUE(kHeading + row + "\r\nmain,7,4,0,o,3,3,0\r\n" == reports.Csv(ChainMode::kAll));
    } else {
      EXPECT_TRUE(kHeading + row.substr(0, 5119) ==
                  reports.Write(Format::kCsv, ChainMode::kAll, "main", WorkEnd::kFailed));
      EXPECT_EQ(w9451, reports.LastWarning());
    }
  }
  // The drawing goes on below, its indentation too.
  const std::string first(5000, 'm');
  const std::string second(200, 'n');
  Reports reports(first + " 4 -> " + second + " o\n" + second + " 3\no 3");
  const std::string line = first + "(7,4)+--" + second + "(3,3)";
  const std::string branch = std::string(5005, ' ') + "+--o(3,3)";
  EXPECT_TRUE(line.substr(0, 5119) + "\r\n" + line.substr(5119) + "\r\n" + branch + "\r\n" ==
              reports.Text(ChainMode::kAll, first));
  // Not inside a character.
  const std::string wide = std::string(5118, 'm') + "\xE3\x81\x82";
  Reports wideReports(wide + " 3");
  EXPECT_TRUE(std::string(5118, 'm') + "\r\n\xE3\x81\x82(3,3)\r\n" ==
              wideReports.Text(ChainMode::kAll, wide));
}

TEST(ChainReport, LinesAreLimitedInBothFormats) {
  for (const size_t chains : {32766u, 32767u, 32768u}) {
    std::string text = "main 4 ->";
    for (size_t i = 0; i < chains; ++i) {
      text += " f" + std::to_string(i);
    }
    for (const Format format : {Format::kText, Format::kCsv}) {
      Reports reports(text);
      const size_t heading = format == Format::kCsv ? 1 : 0;
      const bool fits = chains + heading <= 32767;
      const std::string file = reports.Write(format, ChainMode::kAll, "main",
                                             fits ? WorkEnd::kCompleted : WorkEnd::kFailed);
      EXPECT_EQ(fits ? static_cast<long>(chains + heading) : 32767,
                std::count(file.begin(), file.end(), '\n'));
      // Of what is cut the last line is whole, and the one that the limit allows.
      const StkFunction& last =
          *reports.graph["main"].callees[std::min(chains, 32767 - heading) - 1];
      EXPECT_TRUE(file.ends_with((heading != 0 ? CsvItem(last, reports.graph.codePage)
                                               : TextItem(last, ",", reports.graph.codePage)) +
                                 "\r\n"));
      if (!fits) {
        EXPECT_EQ("W9450 Number of lines reached limit (32767) in output.", reports.LastWarning());
      }
    }
  }
  // 2^60 chains.
  std::string ladder;
  for (int i = 0; i < 60; ++i) {
    const std::string next = " -> a" + std::to_string(i + 1) + " b" + std::to_string(i + 1) + "\n";
    ladder += "a" + std::to_string(i) + " 1" + next + "b" + std::to_string(i) + " 1" + next;
  }
  Reports reports(ladder);
  const std::string file =
      reports.Write(Format::kText, ChainMode::kMaximum, "a0", WorkEnd::kFailed);
  EXPECT_EQ(32767, std::count(file.begin(), file.end(), '\n'));
}

// A second branch half way down needs the whole indentation.
TEST(ChainReport, AVeryDeepChain) {
  constexpr size_t kDepth = 300000;
  const auto name = [](size_t i) { return "f" + std::to_string(900000 - i); };  // the next is less
  std::string text;
  for (size_t i = 0; i < kDepth; ++i) {
    text += name(i) + " 0 -> " + name(i + 1) + (i == kDepth / 2 ? " " + name(i) : "") + "\n";
  }
  Reports reports(text + name(kDepth) + " 0");
  const StkFunction& middle = *reports.graph.functions.Functions()[kDepth / 2];
  const std::string written = reports.Text(ChainMode::kAll, "f900000");
  EXPECT_TRUE(written.starts_with("f900000(0,0)---f899999(0,0)---f899998(0,0)"));
  EXPECT_TRUE(written.ends_with("+--" + TextItem(middle, ",", reports.graph.codePage) + "\r\n"));
}

TEST(ChainReport, StopsAndFailures) {
  Reports reports("main 4 -> f g h\nf 1\ng 1\nh 1");
  std::vector<uint32_t> lines;
  const auto stopAtThree = [&](uint32_t count) {
    lines.push_back(count);
    return count < 3;
  };
  EXPECT_EQ(kHeading + "main,5,4,0,f,1,1,0\r\nmain,5,4,0,g,1,1,0\r\n",
            reports.Write(Format::kCsv, ChainMode::kAll, "main", WorkEnd::kStopped, stopAtThree));
  EXPECT_EQ((std::vector<uint32_t>{2, 3}), lines);

  const std::string path = "C:\\p\\chains.txt";
  reports.host.files.Put(path, "old");
  EXPECT_EQ("old",
            reports.Write(Format::kText, ChainMode::kAll, "main", WorkEnd::kStopped, stopAtThree));
  reports.host.files.SetCapacity(10);
  EXPECT_EQ("old", reports.Write(Format::kText, ChainMode::kAll, "main", WorkEnd::kFailed));
  EXPECT_EQ(std::vector<std::string>{path}, reports.host.files.Paths());
  reports.host.files.Remove(path);
  reports.host.files.SetCapacity(10);
  EXPECT_EQ("main(5,4)+", reports.Write(Format::kText, ChainMode::kAll, "main", WorkEnd::kFailed));
  EXPECT_EQ("W9404 File write error (C:\\p\\chains.txt).", reports.LastWarning());
}

TEST(ChainReport, TheExtensionDecidesTheFormat) {
  const CodePage page = CodePage::Utf8();
  for (const char* path : {"a.csv", "C:\\x.txt\\a.b.CsV"}) {
    EXPECT_EQ(Format::kCsv, StkChainReport::FormatOf(path, page)) << path;
  }
  for (const char* path : {"a.txt", "csv", ".csv", "a.csv.txt", "a.csv\\b", "a.csv "}) {
    EXPECT_EQ(Format::kText, StkChainReport::FormatOf(path, page)) << path;
  }
}

}  // namespace
}  // namespace velkor
