#include "ui/answer/analysis_answer.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <span>
#include <utility>

#include "core/bound_notes.h"
#include "reports/entry_ranking.h"
#include "reports/gate/input_gate.h"
#include "reports/take_result.h"
#include "ui/analysis_inputs.h"

namespace velkor::ui {

namespace {

constexpr size_t kMostColumns = 10;

// Less than a command line takes its time for: somebody waits for the window to answer.
constexpr PlanningEffort kPlanning = {
    .sets = 5'000'000, .kept = 2'000'000, .oneByOne = 2'000'000};

// What the document says in its own thread; the rest is read in another one.
struct Parts {
  const StkMessages& messages;
  const Host& host;
  const ProgramInput& input;
  const StkFunctionTable& functions;
  const StkRootList& roots;
  const StkBounds& bounds;
  std::string project;
  reports::AnalysisInputs inputs;
  std::vector<StkNote> notes;
};

reports::AnalysisResult ResultOf(const Parts& parts, const StkTableReading::Checkpoint& checkpoint) {
  const std::vector<StkMessage> noLog;
  std::vector<StkNote> notes = parts.notes;
  std::ranges::move(BoundNotes(parts.functions, parts.bounds, parts.messages),
                    std::back_inserter(notes));
  checkpoint();
  return reports::TakeResult({.project = parts.project,
                              .compilerName = parts.input.GeneratorName(),
                              .compilerVersion = parts.input.GeneratorVersion(),
                              .inputs = parts.inputs,
                              .log = noLog,
                              .notes = std::move(notes),
                              .functions = parts.functions,
                              .roots = parts.roots.Functions(),
                              .bounds = parts.bounds,
                              .checkpoint = checkpoint});
}

bool StatesStacks(const ProgramInput& input) {
  return input.Settings() != nullptr && !input.Settings()->stacks.empty();
}

// The stacks that have an entry, each with what it needs beside the path of that.
std::vector<reports::IcicleEntry> StackEntries(const reports::GateReport& report) {
  std::vector<reports::IcicleEntry> entries;
  for (const reports::GateStack& stack : report.stacks) {
    if (!stack.deepest) {
      continue;
    }
    reports::IcicleEntry entry{.functions = std::span(&*stack.deepest, 1),
                               .stackSize = stack.size,
                               .stack = stack.name};
    for (const reports::StackRow& row : stack.rows) {
      if (row.part != reports::StackRow::Part::kPath) {
        const bool isHandler = row.part == reports::StackRow::Part::kInterrupt;
        entry.figures.push_back(
            {row.what, row.bytes, isHandler ? row.function : reports::IcicleFigure::kNoFunction});
      }
    }
    entries.push_back(std::move(entry));
  }
  return entries;
}

// A column for each stack, or where none is stated for each of the largest numbers.
reports::Icicle IcicleOf(const AnalysisAnswer& answer, std::span<const uint32_t> largestFirst) {
  std::vector<reports::IcicleEntry> entries;
  if (answer.gate && answer.gate->report) {
    entries = StackEntries(*answer.gate->report);
  }
  if (entries.empty()) {
    for (const auto functions :
         reports::LargestNumbers(answer.result, largestFirst, kMostColumns)) {
      entries.push_back({.functions = functions});
    }
  }
  return reports::TakeIcicle(answer.result, entries);
}

void RankEntries(AnalysisAnswer& answer) {
  const std::vector<reports::EntryGroup> groups = reports::EntryGroups(answer.result);
  for (const reports::EntryGroup& group : groups) {
    const size_t room = AnalysisAnswer::kMostEntries - answer.entries.size();
    const auto first = group.functions.begin();
    answer.entries.insert(
        answer.entries.end(), first,
        first + static_cast<std::ptrdiff_t>(std::min(room, group.functions.size())));
  }
  answer.unbounded = static_cast<size_t>(
      std::ranges::count_if(answer.result.roots, [&answer](uint32_t function) {
        return answer.result.functions[function].state == BoundState::kUnbounded;
      }));
  answer.icicle =
      IcicleOf(answer, groups.empty() ? std::span<const uint32_t>() : groups.front().functions);
}

std::shared_ptr<const AnalysisAnswer> Make(const Parts& parts,
                                           const StkTableReading::Checkpoint& checkpoint) {
  auto answer = std::make_shared<AnalysisAnswer>();
  answer->result = ResultOf(parts, checkpoint);
  checkpoint();
  answer->plan = PlanStatements(parts.functions, parts.bounds, kPlanning);
  checkpoint();
  if (StatesStacks(parts.input)) {
    answer->gate =
        reports::InputGate(parts.input, parts.functions, answer->result, parts.host).Check({}, nullptr);
    checkpoint();
  }
  RankEntries(*answer);
  return answer;
}

}  // namespace

AnswerMaking AnswerOf(UiContext& context) {
  CStkDoc& document = context.document;
  const StkBounds* bounds = document.Bounds();
  if (bounds == nullptr || document.FunctionTable()->Count() == 0) {
    return nullptr;
  }
  auto parts = std::make_shared<Parts>(Parts{.messages = context.messages,
                                             .host = context.host,
                                             .input = *document.Input(),
                                             .functions = *document.FunctionTable(),
                                             .roots = *document.RootList(),
                                             .bounds = *bounds,
                                             .project = document.PathName(),
                                             .inputs = InputsOf(document),
                                             .notes = document.InputNotes()});
  return [parts](const StkTableReading::Checkpoint& checkpoint) {
    return Make(*parts, checkpoint);
  };
}

}  // namespace velkor::ui
