#include "reports/gate/sarif_output.h"

#include <algorithm>
#include <fmt/format.h>
#include <map>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include "messages/product_version.h"
#include "reports/gate/finding_order.h"
#include "reports/gate/gate_rules.h"

namespace velkor::reports {
namespace {

using SarifWriter = rapidjson::Writer<rapidjson::StringBuffer>;

// Of what a reference to a file may hold as it stands.
bool StaysInUri(char c) {
  constexpr std::string_view kOthers = "-._~/+,@";
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         kOthers.find(c) != kOthers.npos;
}

std::string UriOf(std::string_view path) {
  std::string uri;
  for (const char c : path) {
    uri += StaysInUri(c) ? std::string(1, c) : fmt::format("%{:02X}", static_cast<uint8_t>(c));
  }
  return uri;
}

std::string_view LevelOf(Severity severity) {
  return SeverityName(severity);
}

class SarifOutput {
 public:
  SarifOutput(const GateReport& report, const SarifLimits& limits, ResultOutput& output)
      : report_(report), limits_(limits), output_(output), order_(WorstFirst(report)) {}

  void Write() {
    ChooseRules();
    const std::string results = Results();
    output_.Write(R"({"$schema":"https://json.schemastore.org/sarif-2.1.0.json","version":"2.1.0",)"
                  R"("runs":[{"tool":{"driver":)");
    output_.Write(Driver());
    output_.Write(R"(},"automationDetails":)" + Automation());
    output_.Write(R"(,"columnKind":"utf16CodeUnits","invocations":[)" + Invocation() + "]");
    output_.Write(",\"results\":[\n" + results + "\n]}]}\n");
  }

 private:
  // Those of the gate, and those of notes that findings have.
  void ChooseRules() {
    for (const GateRule& rule : GateRules()) {
      ruleIndex_.emplace(rule.name, 0);
    }
    for (const Finding& finding : report_.findings) {
      ruleIndex_.emplace(finding.rule, 0);
    }
    uint32_t index = 0;
    for (auto& [name, place] : ruleIndex_) {
      place = index++;
    }
  }

  std::string Driver() const {
    rapidjson::StringBuffer buffer;
    SarifWriter json(buffer);
    json.StartObject();
    Member(json, "name", "velkor");
    Member(json, "version", ProductVersion());
    Member(json, "semanticVersion", ProductVersion());
    json.Key("rules");
    json.StartArray();
    for (const auto& [name, index] : ruleIndex_) {
      WriteRule(json, name);
    }
    json.EndArray();
    json.EndObject();
    return buffer.GetString();
  }

  static void WriteRule(SarifWriter& json, const std::string& name) {
    const GateRule* rule = FindGateRule(name);
    json.StartObject();
    Member(json, "id", name);
    Text(json, "shortDescription", rule != nullptr ? rule->title : "Something was not read");
    Text(json, "fullDescription",
         rule != nullptr ? rule->text : "A part of the input was not read. It is not counted.");
    Text(json, "help", rule != nullptr ? rule->help : "See what the message says.");
    json.Key("defaultConfiguration");
    json.StartObject();
    Member(json, "level", LevelOf(rule != nullptr ? rule->severity : Severity::kError));
    json.EndObject();
    json.EndObject();
  }

  std::string Automation() const {
    rapidjson::StringBuffer buffer;
    SarifWriter json(buffer);
    json.StartObject();
    Member(json, "id", "velkor/" + report_.name + "/");
    json.EndObject();
    return buffer.GetString();
  }

  std::string Invocation() const {
    rapidjson::StringBuffer buffer;
    SarifWriter json(buffer);
    json.StartObject();
    json.Key("executionSuccessful");
    json.Bool(true);
    if (leftOut_ != 0) {
      json.Key("toolExecutionNotifications");
      json.StartArray();
      json.StartObject();
      Member(json, "level", "warning");
      Text(
          json, "message",
          fmt::format("{} more findings are left out, none of them worse than those that are here: "
                      "--format json has all",
                      leftOut_));
      json.EndObject();
      json.EndArray();
    }
    json.EndObject();
    return buffer.GetString();
  }

  // As many as the limits let; flows take at most half of the room.
  std::string Results() {
    std::string text;
    size_t roomForFlows = limits_.bytes / 2;
    size_t count = 0;
    for (const Finding* finding : order_) {
      std::string flow = roomForFlows != 0 ? FlowOf(*finding) : "";
      if (flow.size() > roomForFlows) {
        flow.clear();
        roomForFlows = 0;
      }
      roomForFlows -= flow.size();
      const std::string result = ResultOf(*finding, flow);
      if (count == limits_.results || text.size() + result.size() > limits_.bytes) {
        leftOut_ = order_.size() - count;
        break;
      }
      text += (count == 0 ? "" : ",\n") + result;
      ++count;
    }
    return text;
  }

  std::string ResultOf(const Finding& finding, const std::string& flow) const {
    rapidjson::StringBuffer buffer;
    SarifWriter json(buffer);
    json.StartObject();
    Member(json, "ruleId", finding.rule);
    json.Key("ruleIndex");
    json.Uint(ruleIndex_.at(finding.rule));
    Member(json, "level", LevelOf(finding.severity));
    Text(json, "message", MessageOf(finding));
    json.Key("locations");
    json.StartArray();
    WriteLocation(json, finding.place, "");
    json.EndArray();
    json.Key("partialFingerprints");
    json.StartObject();
    Member(json, "primaryLocationLineHash", finding.Fingerprint());
    json.EndObject();
    if (!flow.empty()) {
      json.Key("codeFlows");
      json.RawValue(flow.data(), flow.size(), rapidjson::kArrayType);
    }
    json.EndObject();
    return buffer.GetString();
  }

  static std::string MessageOf(const Finding& finding) {
    std::string text = finding.text + ".";
    if (!finding.rows.empty()) {
      text += " " + finding.rows + ".";
    }
    return text + " " + std::string(HelpOf(finding));
  }

  std::string FlowOf(const Finding& finding) const {
    if (finding.steps.empty()) {
      return {};
    }
    rapidjson::StringBuffer buffer;
    SarifWriter json(buffer);
    json.StartArray();
    json.StartObject();
    json.Key("threadFlows");
    json.StartArray();
    json.StartObject();
    json.Key("locations");
    json.StartArray();
    for (size_t i = 0; i < std::min(finding.steps.size(), limits_.steps); ++i) {
      json.StartObject();
      json.Key("location");
      WriteLocation(json, finding.steps[i].place, finding.steps[i].text);
      json.EndObject();
    }
    json.EndArray();
    json.EndObject();
    json.EndArray();
    json.EndObject();
    json.EndArray();
    return buffer.GetString();
  }

  static void WriteLocation(SarifWriter& json, const FindingPlace& place, std::string_view text) {
    json.StartObject();
    json.Key("physicalLocation");
    json.StartObject();
    json.Key("artifactLocation");
    json.StartObject();
    Member(json, "uri", UriOf(place.file));
    json.EndObject();
    json.Key("region");
    json.StartObject();
    json.Key("startLine");
    json.Uint(std::max(place.line, 1U));
    if (place.column != 0) {
      json.Key("startColumn");
      json.Uint(place.column);
    }
    json.EndObject();
    json.EndObject();
    if (!text.empty()) {
      Text(json, "message", text);
    }
    json.EndObject();
  }

  static void Member(SarifWriter& json, const char* key, std::string_view value) {
    json.Key(key);
    json.String(value.data(), static_cast<rapidjson::SizeType>(value.size()));
  }

  static void Text(SarifWriter& json, const char* key, std::string_view text) {
    json.Key(key);
    json.StartObject();
    Member(json, "text", text);
    json.EndObject();
  }

  const GateReport& report_;
  const SarifLimits& limits_;
  ResultOutput& output_;
  std::vector<const Finding*> order_;
  std::map<std::string, uint32_t, std::less<>> ruleIndex_;
  size_t leftOut_ = 0;
};

}  // namespace

void WriteSarif(const GateReport& report, const SarifLimits& limits, ResultOutput& output) {
  SarifOutput(report, limits, output).Write();
}

}  // namespace velkor::reports
