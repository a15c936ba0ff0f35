#include "reports/gate/gate_json.h"

#include "messages/product_version.h"
#include "reports/gate/gate_rules.h"
#include "reports/json_writer.h"

namespace velkor::reports {
namespace {

constexpr unsigned kGateSchema = 2;

class GateJson {
 public:
  explicit GateJson(ResultOutput& output) : json_(output) {}

  void Write(const GateReport& report) {
    json_.StartObject();
    json_.Number("schema", kGateSchema);
    json_.Text("generator", ProductNameAndVersion());
    json_.Text("name", report.name);
    json_.TextOrNull("commit", report.commit);
    json_.StartArray("stacks");
    for (const GateStack& stack : report.stacks) {
      WriteStack(stack);
    }
    json_.EndArray();
    json_.StartArray("findings");
    for (const Finding& finding : report.findings) {
      WriteFinding(finding);
    }
    json_.EndArray();
    json_.Bool("passed", report.Passed());
    json_.EndObject();
  }

 private:
  void WriteStack(const GateStack& stack) {
    json_.StartObject();
    json_.Text("name", stack.name);
    json_.Texts("entries", stack.entries);
    json_.Text("state", StackStateName(stack.state));
    json_.NumberOrNull("need", stack.bounded, stack.known);
    json_.Number("known", stack.known);
    json_.NumberOrNull("size", stack.size.has_value(), stack.size.value_or(0));
    json_.SignedOrNull("free", stack.Free());
    json_.SignedOrNull("change", stack.change);
    WriteStackRows(stack, json_);
    json_.EndObject();
  }

  void WriteFinding(const Finding& finding) {
    json_.StartObject();
    json_.Text("rule", finding.rule);
    json_.Text("severity", SeverityName(finding.severity));
    json_.Text("text", finding.text);
    json_.Text("help", HelpOf(finding));
    json_.TextOrNull("file", finding.place.file);
    json_.NumberOrNull("line", finding.place.line != 0, finding.place.line);
    json_.NumberOrNull("column", finding.place.column != 0, finding.place.column);
    json_.TextOrNull("stack", finding.stack);
    json_.Texts("stacks", finding.stacks);
    json_.Text("fingerprint", finding.Fingerprint());
    json_.EndObject();
  }

  JsonWriter json_;
};

}  // namespace

void WriteStackRows(const GateStack& stack, JsonWriter& json) {
  json.StartArray("rows");
  for (const StackRow& row : stack.rows) {
    json.StartObject();
    json.Text("what", row.what);
    json.Number("bytes", row.bytes);
    json.EndObject();
  }
  json.EndArray();
}

void WriteGateJson(const GateReport& report, ResultOutput& output) {
  GateJson(output).Write(report);
  output.Write("\n");
}

}  // namespace velkor::reports
