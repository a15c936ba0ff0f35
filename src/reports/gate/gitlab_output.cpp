#include "reports/gate/gitlab_output.h"

#include <algorithm>
#include <set>

#include "reports/gate/gate_rules.h"
#include "reports/json_writer.h"

namespace velkor::reports {
namespace {

std::string_view QualitySeverity(const Finding& finding) {
  if (finding.severity == Severity::kError) {
    return finding.rule == "over-budget" ? "critical" : "major";
  }
  return finding.severity == Severity::kWarning ? "minor" : "info";
}

}  // namespace

void WriteGitlabReport(const GateReport& report, ResultOutput& output) {
  JsonWriter json(output);
  std::set<std::string> fingerprints;  // one object each
  json.StartArray();
  for (const Finding& finding : report.findings) {
    std::string fingerprint = finding.Fingerprint();
    if (!fingerprints.insert(fingerprint).second) {
      continue;
    }
    std::string text = finding.text;
    if (!finding.rows.empty()) {
      text += ": " + finding.rows;
    }
    json.StartObject();
    json.Text("description", text + ". " + std::string(HelpOf(finding)));
    json.Text("check_name", finding.rule);
    json.Text("fingerprint", fingerprint);
    json.Text("severity", QualitySeverity(finding));
    json.StartObject("location");
    json.Text("path", finding.place.file);
    json.StartObject("lines");
    json.Number("begin", std::max(finding.place.line, 1U));
    json.EndObject();
    json.EndObject();
    json.EndObject();
  }
  json.EndArray();
  output.Write("\n");
}

}  // namespace velkor::reports
