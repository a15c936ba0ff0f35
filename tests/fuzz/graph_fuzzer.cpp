#include <algorithm>
#include <string>

#include "core/adjustments.h"
#include "core/chain_count.h"
#include "core/chain_walk.h"
#include "core/function_text.h"
#include "core/graph_history.h"
#include "core/literal_model.h"
#include "core/recompute.h"
#include "core/test_source.h"
#include "files/chain_report.h"
#include "fuzz/fuzz_host.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/fuzzers.h"
#include "fuzz/invariants.h"
#include "fuzz/require.h"

namespace velkor::testing {

namespace {

constexpr int kMaxGraphSteps = 12;
constexpr const char* kReport = "C:\\p\\r.txt";

// A report of the chains, drawn by a walk that recurses.
struct LiteralReport {
  void Walk(const StkFunction& function) {
    const std::string item = csv ? CsvItem(function, codePage) : TextItem(function, ",", codePage);
    text += item;
    const bool repeated = std::find(path.begin(), path.end(), &function) != path.end();
    const StkFunctionList next = repeated ? StkFunctionList() : Next(function);
    if (next.empty()) {
      text += "\r\n";
      return;
    }
    path.push_back(&function);
    const std::string before = prefix;
    prefix += csv ? item + "," : std::string(item.size(), ' ');
    for (size_t i = 0; i < next.size(); ++i) {
      text += i != 0 ? prefix : csv ? "," : "";
      const std::string outer = prefix;
      if (!csv) {
        text += AllCallees(function).size() == 1 ? "---" : "+--";
        prefix += i + 1 < next.size() ? "|  " : "   ";
      }
      Walk(*next[i]);
      prefix = outer;
    }
    prefix = before;
    path.pop_back();
  }

  StkFunctionList Next(const StkFunction& function) const {
    StkFunctionList next = AllCallees(function);
    uint32_t most = 0;
    for (const StkFunction* callee : next) {
      most = std::max(most, callee->totalStackSize);
    }
    std::erase_if(next, [&](const StkFunction* callee) {
      return mode == ChainMode::kMaximum && callee->totalStackSize != most;
    });
    return next;
  }

  bool csv;
  ChainMode mode;
  const CodePage& codePage;
  std::string text = {};
  std::string prefix = {};
  std::vector<const StkFunction*> path = {};
};

// A history of a few functions, beside it the literal model of it.
class GraphRun {
 public:
  explicit GraphRun(FuzzInput& input)
      : input_(input),
        host_(input.Page()),
        history_(input, host_.codePage, GraphHistory::kSmall, host_.reporter) {}

  void Step(GraphHistory::Kind kind) {
    const bool rebuilt = history_.Step(kind);
    if (kind == GraphHistory::kNothing) {
      Report();
    } else if (kind == GraphHistory::kDiscard) {
      Propose();
    } else {
      model_.Recompute(rebuilt);
    }
    CheckDatabase(history_.table);
    CheckResults(history_.table, history_.roots);
    RequireEqual(Results(history_.table, history_.roots), model_.Results(), "the results");
  }
  void CheckMessages() const { host_.CheckAllMessages(true); }

 private:
  // Callees that nobody has stated yet.
  void Propose() {
    const StkFunction& function = history_.AnyFunction();
    const StkFunctionList proposed = history_.AnyFunctions();
    RequireEqual(IsRecursiveWith(history_.table, function, proposed),
                 model_.IsRecursiveWith(function.index, proposed),
                 "a recursion that a callee would make", function.name);
  }

  void Report() {
    const StkFunction& start = history_.AnyFunction();
    const ChainMode mode = input_.Below(2) != 0 ? ChainMode::kAll : ChainMode::kMaximum;
    const bool csv = input_.Below(2) != 0;
    LiteralReport literal{csv, mode, host_.codePage};
    literal.Walk(start);
    const auto chains =
        static_cast<uint32_t>(std::count(literal.text.begin(), literal.text.end(), '\n'));
    if (mode == ChainMode::kMaximum) {
      RequireEqual(static_cast<uint32_t>(CountChains(start, mode)), chains,
                   "as many maximum chains as a walk finds", start.name);
    }
    StkChainReport report(csv ? StkChainReport::Format::kCsv : StkChainReport::Format::kText,
                          kReport, host_.host, host_.reporter.Messages());
    Require(report.Open(), "a report opens");
    uint32_t lines = 0;
    const WorkEnd end = report.Write(start, mode, [&lines](uint32_t written) {
      lines = written;
      return true;
    });
    Require(end == WorkEnd::kCompleted, "a small report is written whole");
    RequireEqual(lines, chains + (csv ? 1 : 0), "a line for each chain", start.name);
    const std::string heading =
        csv ? "Function,Total Stack Size,Frame Size,Adjustment Information\r\n" : "";
    RequireEqual(host_.files.Get(kReport).value_or(""), heading + literal.text, "a report");
  }

  FuzzInput& input_;
  FuzzHost host_;
  GraphHistory history_;
  LiteralModel model_{history_.table};
};

}  // namespace

void FuzzGraph(std::string_view bytes) {
  FuzzInput input(bytes);
  GraphRun run(input);
  run.Step(GraphHistory::kCompute);
  for (int step = 0; step < kMaxGraphSteps && !input.AtEnd(); ++step) {
    run.Step(static_cast<GraphHistory::Kind>(input.Below(GraphHistory::kKinds)));
  }
  run.CheckMessages();
}

}  // namespace velkor::testing
