#include <algorithm>
#include <string>

#include "core/adjustments.h"
#include "core/chain_count.h"
#include "core/chain_walk.h"
#include "core/function_text.h"
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

constexpr uint32_t kMaxFunctions = 6;  // the literal model walks every path
constexpr int kMaxSteps = 12;
constexpr const char* kReport = "C:\\p\\r.txt";
constexpr uint32_t kSizes[] = {0, 1, 10, 21845, 32768, 65535, kOverSize};
constexpr uint32_t kMargins[] = {kNoMargin, 0, 1, 65535};
constexpr uint32_t kDepths[] = {kNoDepth, 1, 2, 3, 65536, 0xFFFFFFFF};

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

// One database of a few functions, its history, and the same done to the literal model.
class GraphRun {
 public:
  explicit GraphRun(FuzzInput& input) : input_(input), host_(input.Page()) {
    MakeFunctions();
    model_.emplace(table_);
  }

  void Start() { Recompute(); }

  void Step() {
    switch (input_.Below(8)) {
      case 0:
        return Adjust();
      case 1:
        return Cancel();
      case 2:
        Require(
            CancelAllAdjustments(table_, roots_, host_.reporter) == model_->CancelAllAdjustments(),
            "all are cancelled alike");
        return;
      case 3:
        return ReadAdjustments();
      case 4:
        return Report();
      case 6:
        return Propose();
      case 7:
        return ReadLibrarySize();
      default:
        return Recompute();
    }
  }

  void Check() {
    CheckDatabase(table_);
    CheckResults(table_, roots_);
    host_.CheckAllMessages(true);
    RequireEqual(Index(roots_.Functions()), Index(model_->roots), "the top-level functions");
    RequireEqual(table_.Overflow(), model_->overflow, "the overflow flag");
    for (const auto& function : table_.Functions()) {
      const ModelFunction& expected = model_->functions[function->index];
      RequireEqual(function->flags, expected.flags, "flags", function->name);
      RequireEqual(function->totalStackSize, expected.total, "a total", function->name);
      RequireEqual(function->maxCalleeSize, expected.maxCalleeSize, "the largest callee",
                   function->name);
      RequireEqual(static_cast<uint32_t>(function->chainCount),
                   static_cast<uint32_t>(expected.chainCount), "a chain count", function->name);
    }
    RequireEqual(Joined(host_.log.lines), Joined(model_->log), "the log");
  }

 private:
  static std::string Joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
      text += line + "\n";
    }
    return text;
  }
  static std::string Index(const StkFunctionList& list) { return Index(Indices(list)); }
  static std::string Index(const IndexList& list) {
    std::string text;
    for (const size_t index : list) {
      text += std::to_string(index) + " ";
    }
    return text;
  }

  template <typename T, size_t kCount>
  T AnyOf(const T (&values)[kCount]) {
    return values[input_.Below(kCount)];
  }
  StkFunction& AnyFunction() { return *table_.Functions()[input_.Below(table_.Count())]; }
  StkFunctionList AnyFunctions() {
    const uint32_t chosen = input_.Byte();
    StkFunctionList list;
    for (const auto& function : table_.Functions()) {
      if ((chosen >> function->index & 1) != 0) {
        list.push_back(function);
      }
    }
    return list;
  }
  StkAdjustment AnyAdjustment(const StkFunction& function) {
    StkAdjustment adjustment;
    adjustment.margin = AnyOf(kMargins);
    adjustment.depth = AnyOf(kDepths);
    StkFunctionList callees = AnyFunctions();
    std::erase_if(callees,
                  [&](const StkFunction* callee) { return function.CallsDirectly(*callee); });
    if (!callees.empty()) {
      adjustment.SetCallees(callees, table_.GetCodePage());
    }
    return adjustment;
  }

  // A byte of callees and one of properties for each; names run against the table's order where
  // the properties say so.
  void MakeFunctions() {
    const uint32_t count = 1 + input_.Below(kMaxFunctions);
    const auto name = [count](uint32_t i) { return std::string("_") + char('a' + count - i); };
    for (uint32_t i = 0; i < count; ++i) {
      StkFunction& function =
          table_.AddDefined(input_.Below(2) != 0 ? name(i) + "x" : name(i), files_.Intern("f.c"));
      function.flags |= input_.Below(2) != 0 ? uint32_t{FN_GLOBAL} : 0u;
      function.frameSize = AnyOf(kSizes);
      if (input_.Below(4) == 1) {
        function.SetFixedExtra();
      }
      const uint32_t callees = input_.Byte();
      for (uint32_t callee = 0; callee <= count; ++callee) {
        if ((callees >> callee & 1) != 0) {
          table_.AddCallName(function, name(callee));
        }
      }
    }
    table_.ResolveAllCalls();
  }

  void Recompute() {
    const bool rebuild = input_.Below(2) != 0;
    velkor::Recompute(table_, roots_, rebuild, nullptr, nullptr, host_.reporter);
    model_->Recompute(rebuild, std::nullopt);
  }

  void Adjust() {
    StkFunction& function = AnyFunction();
    const StkAdjustment adjustment = AnyAdjustment(function);
    Require(AdjustFunction(table_, roots_, function, adjustment, host_.reporter) ==
                model_->AdjustFunction(function.index, ModelAdjustment(adjustment)),
            "a change of callees is told");
  }

  void Cancel() {
    StkFunction& function = AnyFunction();
    Require(CancelAdjustment(table_, roots_, function, host_.reporter) ==
                model_->CancelAdjustment(function.index),
            "a change of callees is told");
  }

  void ReadAdjustments() {
    const auto kind = static_cast<SpecificationKind>(input_.Below(3));
    for (uint32_t count = input_.Below(4); count > 0; --count) {
      StkFunction& function = AnyFunction();
      if (function.pendingAdjustment == nullptr) {
        StkAdjustment adjustment = AnyAdjustment(function);
        model_->functions[function.index].pending = ModelAdjustment(adjustment);
        table_.SetPendingAdjustment(function, std::move(adjustment));
      }
    }
    const bool rebuild = input_.Below(2) != 0;
    TestSource source(kind);
    velkor::Recompute(table_, roots_, rebuild, &source, nullptr, host_.reporter);
    model_->Recompute(rebuild, kind);
  }

  // Adjustments of a file that is given up, and callees that nobody has stated yet.
  void Propose() {
    StkFunction& function = AnyFunction();
    table_.SetPendingAdjustment(function, AnyAdjustment(function));
    table_.DiscardPendingAdjustments();
    const StkFunctionList proposed = AnyFunctions();
    RequireEqual(IsRecursiveWith(table_, function, proposed),
                 model_->IsRecursiveWith(function.index, Indices(proposed)),
                 "a recursion that a callee would make", function.name);
  }

  void ReadLibrarySize() {
    StkFunction& function = AnyFunction();
    if (function.IsUnknown()) {
      table_.SetLibrarySize(function, input_.Byte());
      ModelFunction& expected = model_->functions[function.index];
      expected.flags |= uint32_t{FN_LIBRARY};
      expected.librarySize = function.librarySize;
    }
    velkor::Recompute(table_, roots_, false, nullptr, nullptr, host_.reporter);
    model_->Recompute(false, std::nullopt);
  }

  void Report() {
    const StkFunction& start = AnyFunction();
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
  StkFileTable files_{host_.codePage};
  StkFunctionTable table_{host_.codePage};
  StkRootList roots_;
  std::optional<LiteralModel> model_;
};

}  // namespace

void FuzzGraph(std::string_view bytes) {
  FuzzInput input(bytes);
  GraphRun run(input);
  run.Start();
  run.Check();
  for (int step = 0; step < kMaxSteps && !input.AtEnd(); ++step) {
    run.Step();
    run.Check();
  }
}

}  // namespace velkor::testing
