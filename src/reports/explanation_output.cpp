#include "reports/explanation_output.h"

#include <fmt/format.h>

#include "reports/explanation_rows.h"
#include "reports/gate/gate_json.h"
#include "reports/json_writer.h"
#include "reports/terminal_text.h"

namespace velkor::reports {
namespace {

class ExplanationJson {
 public:
  ExplanationJson(const AnalysisResult& result, const std::vector<GateStack>& stacks,
                  ResultOutput& output)
      : result_(result), stacks_(stacks), json_(output) {}

  void Write(uint32_t function) {
    json_.StartObject();
    WriteFunction(function);
    json_.Text("state", BoundStateName(result_.functions[function].state));
    json_.Number("value", result_.functions[function].known);
    json_.StartArray("rows");
    for (const ExplanationRow& row : result_.explanations.Of(function)) {
      WriteRow(row);
    }
    json_.EndArray();
    if (!stacks_.empty()) {
      json_.StartArray("stacks");
      for (const GateStack& stack : stacks_) {
        WriteStack(stack);
      }
      json_.EndArray();
    }
    json_.EndObject();
  }

 private:
  // The path of its deepest entry is told by the rows of that.
  void WriteStack(const GateStack& stack) {
    json_.StartObject();
    json_.Text("name", stack.name);
    json_.NumberOrNull("need", stack.bounded, stack.known);
    json_.Number("known", stack.known);
    json_.NumberOrNull("size", stack.size.has_value(), stack.size.value_or(0));
    WriteStackRows(stack, json_);
    json_.EndObject();
  }

  void WriteRow(const ExplanationRow& row) {
    json_.StartObject();
    WriteFunction(row.function);
    json_.Number("bytes", row.bytes);
    json_.Number("times", row.times);
    json_.NumberOrNull("group", row.group != StkBounds::kNoGroup, row.group);
    if (row.callsLeftOut) {
      json_.Null("calls");
    } else {
      WriteCalls(row.calls);
    }
    json_.EndObject();
  }

  void WriteCalls(const std::vector<ExplainedCall>& calls) {
    json_.StartArray("calls");
    for (const ExplainedCall& call : calls) {
      json_.StartObject();
      WriteFunction(call.function);
      json_.Number("bytes", call.bytes);
      json_.EndObject();
    }
    json_.EndArray();
  }

  void WriteFunction(uint32_t function) { json_.Text("function", result_.SpecName(function)); }

  const AnalysisResult& result_;
  const std::vector<GateStack>& stacks_;
  JsonWriter json_;
};

// Its entry is the row above.
void WriteStackText(const GateStack& stack, ResultOutput& output) {
  output.Write(fmt::format("\nStack {}: {}{} of {} bytes\n", OneLine(stack.name),
                           stack.bounded ? "" : "at least ", stack.known,
                           stack.size ? std::to_string(*stack.size) : "?"));
  uint64_t entry = 0;
  for (const StackRow& row : stack.rows) {
    entry += row.part == StackRow::Part::kPath ? row.bytes : 0;
  }
  output.Write(fmt::format("{:>10}  its deepest entry, {}\n", entry,
                           OneLine(stack.rows.empty() ? "" : stack.rows.front().what)));
  for (const StackRow& row : stack.rows) {
    if (row.part != StackRow::Part::kPath) {
      output.Write(fmt::format("{:>10}  {}\n", row.bytes, OneLine(row.what)));
    }
  }
}

}  // namespace

void WriteExplanation(const AnalysisResult& result, uint32_t function, ResultOutput& output,
                      const std::vector<GateStack>& stacks) {
  const BoundState state = result.functions[function].state;
  output.Write(fmt::format("State      {}\n", BoundStateName(state)));
  output.Write(
      "\nThe bytes of the rows add up to the first line.\n"
      "*: recursive.  &: calls indirectly.  [ ]: not defined in the project.\n"
      "+: adjustment or library size.\n\n");
  ExplanationRows rows(result, ExplanationRows::Shown::kAll, output);
  rows.WriteHeading("Bytes");
  rows.WriteFunction(function);
  for (const GateStack& stack : stacks) {
    WriteStackText(stack, output);
  }
}

void WriteExplanationJson(const AnalysisResult& result, uint32_t function, ResultOutput& output,
                          const std::vector<GateStack>& stacks) {
  ExplanationJson(result, stacks, output).Write(function);
  output.Write("\n");
}

}  // namespace velkor::reports
