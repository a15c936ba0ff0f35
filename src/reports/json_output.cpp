#include "reports/json_output.h"

#include "core/function_text.h"
#include "core/reason_witnesses.h"
#include "reports/json_writer.h"

namespace velkor::reports {
namespace {

constexpr unsigned kSchema = 2;

class JsonOutput {
 public:
  JsonOutput(const AnalysisResult& result, ResultOutput& output)
      : result_(result),
        witnesses_(result.functions, result.bounds),
        json_(result.codePage, output) {}

  void Write() {
    json_.StartObject();
    WriteHead();
    WriteInputs();
    json_.Number("limit", result_.functions.SizeLimit());
    WriteLog();
    WriteWarnings();
    WriteNotes();
    WriteCounts();
    json_.Bool("overflow", result_.functions.Overflow());
    json_.Indices("roots", result_.roots);
    WriteGroups();
    json_.StartArray("functions");
    for (const StkFunction* function : result_.functions.Functions()) {
      WriteFunction(*function);
    }
    json_.EndArray();
    json_.EndObject();
  }

 private:
  void WriteHead() {
    json_.Number("schema", kSchema);
    json_.Text("generator", "velkor " VELKOR_VERSION);
    json_.Text("project", result_.project);
    json_.StartObject("compiler");
    json_.Text("name", result_.compilerName);
    json_.TextOrNull("version", result_.compilerVersion.value_or(""));
    json_.EndObject();
  }

  void WriteInputs() {
    const AnalysisInputs& inputs = result_.inputs;
    json_.StartObject("inputs");
    json_.Number("modules", inputs.Count());
    json_.Number("read", inputs.read);
    WriteTexts("missing", inputs.missing);
    WriteTexts("notWhole", inputs.notWhole);
    json_.EndObject();
  }

  void WriteTexts(const char* key, const std::vector<std::string>& texts) {
    json_.StartArray(key);
    for (const std::string& text : texts) {
      json_.Text(text);
    }
    json_.EndArray();
  }

  void WriteLog() {
    json_.StartArray("log");
    for (const StkMessage& message : result_.log) {
      json_.Text(message.text);
    }
    json_.EndArray();
  }

  void WriteWarnings() {
    json_.StartArray("warnings");
    for (const StkMessage& message : result_.log) {
      if (message.IsWarning()) {
        WriteWarning(message);
      }
    }
    json_.EndArray();
  }

  void WriteWarning(const StkMessage& message) {
    const std::string lead = message.Code() + " ";  // as every text of a message with a code begins
    json_.StartObject();
    json_.Text("code", message.Code());
    json_.Text("text", std::string_view(message.text).substr(lead.size()));
    json_.TextOrNull("file", message.file);
    json_.NumberOrNull("line", message.line != 0, message.line);
    json_.EndObject();
  }

  void WriteNotes() {
    json_.StartArray("notes");
    for (const StkNote& note : result_.notes) {
      json_.StartObject();
      json_.Text("rule", note.rule);
      json_.Text("text", note.text);
      json_.TextOrNull("file", note.file);
      json_.NumberOrNull("line", note.line != 0, note.line);
      json_.NumberOrNull("function", note.function.has_value(), note.function.value_or(0));
      json_.EndObject();
    }
    json_.EndArray();
  }

  void WriteCounts() {
    json_.StartObject("counts");
    json_.Number("functions", result_.functions.Count());
    json_.Number("unknown", result_.functions.UnknownCount());
    json_.Number("adjusted", result_.functions.AdjustedCount());
    json_.EndObject();
  }

  void WriteGroups() {
    json_.StartArray("groups");
    for (const RecursionGroup& group : result_.bounds.Groups()) {
      json_.StartObject();
      json_.Indices("members", group.members);
      json_.Bool("settled", group.settled);
      json_.Indices("counted", group.counted);
      json_.Number("activations", group.activations);
      json_.EndObject();
    }
    json_.EndArray();
  }

  void WriteFunction(const StkFunction& function) {
    const uint32_t group = result_.bounds.GroupOf(function);
    json_.StartObject();
    WriteNames(function);
    json_.Text("kind", KindName(function.Kind()));
    WriteFlags(function);
    WriteSizes(function);
    WriteBound(function);
    json_.Number("librarySize", function.librarySize);
    json_.Number("chainCount", static_cast<uint32_t>(function.chainCount));
    WriteAdjustment(function);
    json_.Bool("complete", result_.bounds.IsComplete(function));
    json_.NumberOrNull("group", group != StkBounds::kNoGroup, group);
    json_.Indices("callees", function.callees);
    json_.Indices("extraCallees", function.extraCallees);
    WriteSites(function);
    json_.EndObject();
  }

  void WriteNames(const StkFunction& function) {
    const std::string specName = FunctionSpecName(function, result_.codePage);
    json_.Text("name", function.name);
    json_.Text("specName", specName);
    json_.Text("displayName", FunctionDisplayName(function, result_.codePage));
    const StkFileEntry* file = function.place.file != nullptr ? function.place.file : function.file;
    json_.TextOrNull("file", file != nullptr ? std::string_view(file->name) : std::string_view());
    json_.Text("statement", specName);
    json_.NumberOrNull("line", function.place.line != 0, function.place.line);
  }

  void WriteSites(const StkFunction& function) {
    json_.StartArray("indirectSites");
    if (function.indirectSites != nullptr) {
      for (const SourceLine& site : *function.indirectSites) {
        json_.StartObject();
        json_.TextOrNull(
            "file", site.file != nullptr ? std::string_view(site.file->name) : std::string_view());
        json_.NumberOrNull("line", site.line != 0, site.line);
        json_.NumberOrNull("column", site.column != 0, site.column);
        json_.EndObject();
      }
    }
    json_.EndArray();
  }

  void WriteFlags(const StkFunction& function) {
    json_.Bool("defined", function.Is(FN_DEFINED));
    json_.Bool("global", function.Is(FN_GLOBAL));
    json_.Bool("recursive", function.Is(FN_RECURSIVE));
    json_.Bool("topLevel", function.Is(FN_ROOT));
    json_.Bool("indirectCall", function.Is(FN_INDIRECT_CALL));
    json_.Bool("library", function.Is(FN_LIBRARY));
    json_.Bool("fixedExtra", function.Is(FN_FIXED_EXTRA));
    json_.Bool("dynamicFrame", function.Is(FN_DYNAMIC_FRAME));
    json_.Bool("sizeUnknown", function.Is(FN_SIZE_UNKNOWN));
    json_.Text("source", SourceName(function.source));
  }

  void WriteSizes(const StkFunction& function) {
    const std::string frameText = FrameSizeText(function);
    const std::string totalText = TotalSizeText(function);
    WriteSize("frameSize", function.frameSize, frameText);
    WriteSize("totalStackSize", function.totalStackSize, totalText);
    json_.Text("frameText", frameText);
    json_.Text("totalText", totalText);
    json_.Text("adjustmentText", AdjustmentInfoText(function, AdjustmentStyle::kList));
  }

  // A size is a number exactly where its text is one.
  void WriteSize(const char* key, uint32_t size, std::string_view text) {
    json_.NumberOrNull(key, text != "?" && size != kOverSize, size);
  }

  void WriteBound(const StkFunction& function) {
    const StkBounds& bounds = result_.bounds;
    const BoundState state = bounds.State(function);
    json_.Text("boundState", BoundStateName(state));
    json_.NumberOrNull("bound", state == BoundState::kBounded, bounds.Known(function));
    json_.Number("known", bounds.Known(function));
    json_.StartArray("reasons");
    for (const ReasonWitnesses::Reason& reason : witnesses_.Of(function)) {
      json_.StartObject();
      json_.Text("kind", ReasonName(reason.kind));
      json_.Number("function", reason.function->index);
      json_.EndObject();
    }
    json_.EndArray();
  }

  void WriteAdjustment(const StkFunction& function) {
    const StkAppliedAdjustment* adjustment = function.adjustment.get();
    const uint32_t margin = adjustment != nullptr ? adjustment->margin : kNoMargin;
    const uint32_t depth = adjustment != nullptr ? adjustment->depth : kNoDepth;
    json_.NumberOrNull("margin", margin != kNoMargin, margin);
    json_.NumberOrNull("depth", depth != kNoDepth, depth);
    json_.Bool("adjusted", adjustment != nullptr);
  }

  static std::string_view SourceName(FunctionSource source) {
    constexpr std::string_view kNames[] = {"none", "module", "call graph file", "object",
                                           "program"};
    return kNames[static_cast<size_t>(source)];
  }

  static std::string_view KindName(FunctionKind kind) {
    constexpr std::string_view kNames[] = {"specified", "recursive", "defined", "unknown"};
    return kNames[static_cast<size_t>(kind)];
  }

  const AnalysisResult& result_;
  const ReasonWitnesses witnesses_;
  JsonWriter json_;
};

}  // namespace

void WriteJson(const AnalysisResult& result, ResultOutput& output) {
  JsonOutput(result, output).Write();
  output.Write("\n");
}

}  // namespace velkor::reports
