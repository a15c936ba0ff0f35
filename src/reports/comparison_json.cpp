#include "reports/comparison_json.h"

#include "messages/product_version.h"
#include "reports/comparison_texts.h"
#include "reports/json_output.h"
#include "reports/json_writer.h"
#include "reports/terminal_text.h"

namespace velkor::reports {
namespace {

class ComparisonJson {
 public:
  ComparisonJson(const Comparison& comparison, const ComparedAnalysis& before,
                 const ComparedAnalysis& after, ResultOutput& output)
      : comparison_(comparison), before_(before), after_(after), json_(output) {}

  void Write() {
    json_.StartObject();
    json_.Number("schema", kJsonSchema);
    json_.Text("generator", ProductNameAndVersion());
    json_.Text("old", before_.label);
    json_.Text("new", after_.label);
    json_.Bool("changed", comparison_.Count(EntryChange::kUnchanged) != comparison_.entries.size());
    json_.StartArray("functions");
    for (const ComparedEntry& entry : comparison_.entries) {
      WriteEntry(entry);
    }
    json_.EndArray();
    json_.StartArray("causes");
    for (const ChangeCause& cause : comparison_.causes) {
      WriteCause(cause);
    }
    json_.EndArray();
    json_.EndObject();
  }

 private:
  void WriteEntry(const ComparedEntry& entry) {
    json_.StartObject();
    json_.Text("function", entry.after ? after_.names[*entry.after] : before_.names[*entry.before]);
    json_.Text("change", ChangeName(entry.change));
    WriteSide("old", before_, entry.before);
    WriteSide("new", after_, entry.after);
    json_.EndObject();
  }

  void WriteSide(const char* key, const ComparedAnalysis& analysis,
                 std::optional<uint32_t> function) {
    if (!function) {
      json_.Null(key);
      return;
    }
    const ComparedFunction& compared = analysis.functions[*function];
    json_.StartObject(key);
    json_.Text("boundState", BoundStateName(compared.state));
    json_.NumberOrNull("bound", compared.state == BoundState::kBounded, compared.known);
    json_.Number("known", compared.known);
    json_.EndObject();
  }

  void WriteCause(const ChangeCause& cause) {
    const ComparedAnalysis& analysis = cause.inOld ? before_ : after_;
    const ComparedFunction& function = analysis.functions[cause.function];
    json_.StartObject();
    json_.Text("kind", KindName(cause));
    json_.Text("function", analysis.names[cause.function]);
    json_.TextOrNull("file", function.file == kNoFile ? "" : analysis.files[function.file]);
    json_.NumberOrNull("line", function.line != 0, function.line);
    json_.Text("text", ComparisonTexts(comparison_, before_, after_, OneLine).Cause(cause));
    json_.StartArray("path");
    for (const uint32_t each : cause.path) {
      json_.Text(analysis.names[each]);
    }
    json_.EndArray();
    json_.StartArray("functions");
    for (const size_t entry : cause.entries) {
      const ComparedEntry& of = comparison_.entries[entry];
      json_.Text(of.after ? after_.names[*of.after] : before_.names[*of.before]);
    }
    json_.EndArray();
    json_.EndObject();
  }

  static std::string_view KindName(const ChangeCause& cause) {
    switch (cause.kind) {
      case ChangeCause::Kind::kReason:
        return ReasonName(cause.reason);
      case ChangeCause::Kind::kSize:
        return "size";
      case ChangeCause::Kind::kCall:
        return "call";
      case ChangeCause::Kind::kRounds:
        return "rounds";
      case ChangeCause::Kind::kPath:
        break;
    }
    return "path";
  }

  const Comparison& comparison_;
  const ComparedAnalysis& before_;
  const ComparedAnalysis& after_;
  JsonWriter json_;
};

}  // namespace

void WriteComparisonJson(const Comparison& comparison, const ComparedAnalysis& before,
                         const ComparedAnalysis& after, ResultOutput& output) {
  ComparisonJson(comparison, before, after, output).Write();
  output.Write("\n");
}

}  // namespace velkor::reports
