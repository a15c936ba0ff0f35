#include "reports/json_output.h"

#include "messages/product_version.h"
#include "reports/function_parts.h"
#include "reports/json_writer.h"

namespace velkor::reports {
namespace {

class JsonOutput {
 public:
  JsonOutput(const AnalysisResult& result, ResultOutput& output) : result_(result), json_(output) {}

  void Write(size_t threads) {
    json_.StartObject();
    WriteHead();
    WriteInputs();
    json_.Number("limit", result_.sizeLimit);
    WriteLog();
    WriteWarnings();
    WriteNotes();
    WriteCounts();
    json_.Bool("overflow", result_.overflow);
    json_.Indices("roots", result_.roots);
    WriteGroups();
    json_.StartArray("functions");
    FunctionParts{.functions = result_.functions.size(),
                  .threads = threads,
                  .make = [this](uint32_t first, uint32_t end,
                                 std::string& text) { AppendFunctions(result_, first, end, text); },
                  .take = [this](std::string_view text) { json_.Elements(text); }}
        .Run();
    json_.EndArray();
    json_.EndObject();
  }

 private:
  // As they stand in the array of functions: what leads to its first element is taken away.
  static void AppendFunctions(const AnalysisResult& result, uint32_t first, uint32_t end,
                              std::string& text) {
    ResultOutput output([&](std::string_view written) {
      text += written;
      return true;
    });
    JsonOutput functions(result, output);
    functions.json_.StartObject();
    functions.json_.StartArray("functions");
    output.Finish();
    text = first == 0 ? std::string_view() : JsonWriter::kBetweenElements;
    for (uint32_t function = first; function < end; ++function) {
      functions.WriteFunction(function);
    }
    output.Finish();
  }

  void WriteHead() {
    json_.Number("schema", kJsonSchema);
    json_.Text("generator", ProductNameAndVersion());
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
    json_.Texts("missing", inputs.missing);
    json_.Texts("notWhole", inputs.notWhole);
    json_.EndObject();
  }

  void WriteLog() { json_.Texts("log", result_.log); }

  void WriteWarnings() {
    json_.StartArray("warnings");
    for (const AnalysisWarning& warning : result_.warnings) {
      json_.StartObject();
      json_.Text("code", warning.code);
      json_.Text("text", warning.text);
      json_.TextOrNull("file", warning.file);
      json_.NumberOrNull("line", warning.line != 0, warning.line);
      json_.EndObject();
    }
    json_.EndArray();
  }

  void WriteNotes() {
    json_.StartArray("notes");
    for (const AnalysisNote& note : result_.notes) {
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
    json_.Number("functions", result_.functions.size());
    json_.Number("unknown", result_.unknownCount);
    json_.Number("adjusted", result_.adjustedCount);
    json_.EndObject();
  }

  void WriteGroups() {
    json_.StartArray("groups");
    for (const RecursionGroup& group : result_.groups) {
      json_.StartObject();
      json_.Indices("members", group.members);
      json_.Bool("settled", group.settled);
      json_.Indices("counted", group.counted);
      json_.Number("activations", group.activations);
      json_.EndObject();
    }
    json_.EndArray();
  }

  void WriteFunction(uint32_t index) {
    const AnalysedFunction& function = result_.functions[index];
    const uint32_t group = result_.explanations.GroupOf(index);
    json_.StartObject();
    WriteNames(index);
    json_.Text("kind", KindName(function.kind));
    WriteFlags(function);
    WriteSizes(index);
    WriteBound(index);
    json_.Number("librarySize", result_.LibrarySize(index));
    json_.Number("chainCount", static_cast<uint32_t>(function.chainCount));
    WriteAdjustment(index);
    json_.Bool("complete", function.complete);
    json_.NumberOrNull("group", group != StkBounds::kNoGroup, group);
    json_.Indices("callees", result_.Callees(index));
    json_.Indices("extraCallees", result_.ExtraCallees(index));
    WriteSites(index);
    json_.EndObject();
  }

  void WriteNames(uint32_t index) {
    const AnalysedFunction& function = result_.functions[index];
    json_.Text("name", result_.Name(index));
    json_.Text("specName", result_.SpecName(index));
    json_.Text("displayName", result_.DisplayName(index));
    if (function.file != kNoFile) {
      json_.Text("file", result_.File(function.file));
    } else {
      json_.Null("file");
    }
    json_.TextOrNull("statement", result_.Statement(index).value_or(""));
    json_.NumberOrNull("line", function.line != 0, function.line);
  }

  void WriteSites(uint32_t index) {
    json_.StartArray("indirectSites");
    for (const AnalysedSite& site : result_.Sites(index)) {
      json_.StartObject();
      json_.TextOrNull("file", result_.File(site.file));
      json_.NumberOrNull("line", site.line != 0, site.line);
      json_.NumberOrNull("column", site.column != 0, site.column);
      json_.NumberOrNull("address", site.address != 0, site.address);
      json_.EndObject();
    }
    json_.EndArray();
  }

  void WriteFlags(const AnalysedFunction& function) {
    json_.Bool("defined", function.Is(FN_DEFINED));
    json_.Bool("global", function.Is(FN_GLOBAL));
    json_.Bool("recursive", function.Is(FN_RECURSIVE));
    json_.Bool("topLevel", function.Is(FN_ROOT));
    json_.Bool("reachedThroughPointers", function.IsReachedThroughPointers());
    json_.Bool("indirectCall", function.Is(FN_INDIRECT_CALL));
    json_.Bool("library", function.Is(FN_LIBRARY));
    json_.Bool("fixedExtra", function.Is(FN_FIXED_EXTRA));
    json_.Bool("dynamicFrame", function.Is(FN_DYNAMIC_FRAME));
    json_.Bool("sizeUnknown", function.Is(FN_SIZE_UNKNOWN));
    json_.Text("source", SourceName(function.source));
  }

  void WriteSizes(uint32_t index) {
    const AnalysedFunction& function = result_.functions[index];
    const std::string frameText = result_.FrameText(index);
    const std::string totalText = result_.TotalText(index);
    WriteSize("frameSize", function.frameSize, frameText);
    WriteSize("totalStackSize", function.totalStackSize, totalText);
    json_.Text("frameText", frameText);
    json_.Text("totalText", totalText);
    json_.Text("adjustmentText", result_.AdjustmentText(index, AdjustmentStyle::kList));
  }

  // A size is a number exactly where its text is one.
  void WriteSize(const char* key, uint32_t size, std::string_view text) {
    json_.NumberOrNull(key, text != "?" && size != kOverSize, size);
  }

  void WriteBound(uint32_t index) {
    const AnalysedFunction& function = result_.functions[index];
    json_.Text("boundState", BoundStateName(function.state));
    json_.NumberOrNull("bound", function.state == BoundState::kBounded, function.known);
    json_.Number("known", function.known);
    json_.StartArray("reasons");
    for (const ReasonWitness& reason : result_.Reasons(index)) {
      json_.StartObject();
      json_.Text("kind", ReasonName(reason.kind));
      json_.Number("function", reason.function);
      json_.EndObject();
    }
    json_.EndArray();
  }

  void WriteAdjustment(uint32_t index) {
    const StkAppliedAdjustment adjustment = result_.Adjustment(index);
    json_.NumberOrNull("margin", adjustment.margin != kNoMargin, adjustment.margin);
    json_.NumberOrNull("depth", adjustment.depth != kNoDepth, adjustment.depth);
    json_.Bool("adjusted", result_.functions[index].adjusted);
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
  JsonWriter json_;
};

}  // namespace

void WriteJson(const AnalysisResult& result, ResultOutput& output, size_t threads) {
  JsonOutput(result, output).Write(threads);
  output.Write("\n");
}

}  // namespace velkor::reports
