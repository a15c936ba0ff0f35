#include "reports/explanation_output.h"

#include <fmt/format.h>

#include "reports/explanation_rows.h"
#include "reports/json_writer.h"

namespace velkor::reports {
namespace {

class ExplanationJson {
 public:
  ExplanationJson(const AnalysisResult& result, ResultOutput& output)
      : result_(result), json_(output) {}

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
    json_.EndObject();
  }

 private:
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
  JsonWriter json_;
};

}  // namespace

void WriteExplanation(const AnalysisResult& result, uint32_t function, ResultOutput& output) {
  const BoundState state = result.functions[function].state;
  output.Write(fmt::format("State      {}\n", BoundStateName(state)));
  output.Write(
      "\nThe bytes of the rows add up to the first line.\n"
      "*: recursive.  &: calls indirectly.  [ ]: not defined in the project.\n"
      "+: adjustment or library size.\n\n");
  ExplanationRows rows(result, ExplanationRows::Shown::kAll, output);
  rows.WriteHeading("Bytes");
  rows.WriteFunction(function);
}

void WriteExplanationJson(const AnalysisResult& result, uint32_t function, ResultOutput& output) {
  ExplanationJson(result, output).Write(function);
  output.Write("\n");
}

}  // namespace velkor::reports
