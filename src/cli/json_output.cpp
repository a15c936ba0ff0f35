#include "cli/json_output.h"

#include <rapidjson/prettywriter.h>

#include "core/function_text.h"

namespace velkor {
namespace {

constexpr unsigned kSchema = 1;

class JsonOutput {
 public:
  JsonOutput(const AnalysisResult& result, ResultOutput& output)
      : result_(result), writer_(output) {
    writer_.SetIndent(' ', 1);
    writer_.SetFormatOptions(rapidjson::kFormatSingleLineArray);
  }

  void Write() {
    writer_.StartObject();
    WriteHead();
    WriteLog();
    WriteCounts();
    Bool("overflow", result_.functions.Overflow());
    Indices("roots", result_.roots);
    writer_.Key("functions");
    writer_.StartArray();
    for (const auto& function : result_.functions.Functions()) {
      WriteFunction(*function);
    }
    writer_.EndArray();
    writer_.EndObject();
  }

 private:
  void WriteHead() {
    writer_.Key("schema");
    writer_.Uint(kSchema);
    Text("generator", "velkor " VELKOR_VERSION);
    Text("project", result_.project);
    writer_.Key("compiler");
    writer_.StartObject();
    Text("name", result_.compilerName);
    if (result_.compilerVersion) {
      Text("version", *result_.compilerVersion);
    } else {
      Null("version");
    }
    writer_.EndObject();
  }

  void WriteLog() {
    writer_.Key("log");
    writer_.StartArray();
    for (const StkMessage& message : result_.log) {
      String(message.text);
    }
    writer_.EndArray();
  }

  void WriteCounts() {
    writer_.Key("counts");
    writer_.StartObject();
    Number("functions", result_.functions.Count());
    Number("unknown", result_.functions.UnknownCount());
    Number("adjusted", result_.functions.AdjustedCount());
    writer_.EndObject();
  }

  void WriteFunction(const StkFunction& function) {
    writer_.StartObject();
    Text("name", function.name);
    Text("specName", FunctionSpecName(function, result_.codePage));
    Text("displayName", FunctionDisplayName(function, result_.codePage));
    if (function.file != nullptr) {
      Text("file", function.file->name);
    } else {
      Null("file");
    }
    Text("kind", Kind(function));
    WriteFlags(function);
    WriteSizes(function);
    WriteAdjustment(function);
    Bool("complete", result_.IsComplete(function));
    Indices("callees", function.callees);
    Indices("extraCallees", function.extraCallees);
    writer_.EndObject();
  }

  void WriteFlags(const StkFunction& function) {
    Bool("defined", function.Is(FN_DEFINED));
    Bool("global", function.Is(FN_GLOBAL));
    Bool("recursive", function.Is(FN_RECURSIVE));
    Bool("topLevel", function.Is(FN_ROOT));
    Bool("indirectCall", function.Is(FN_INDIRECT_CALL));
    Bool("library", function.Is(FN_LIBRARY));
    Bool("fixedExtra", function.Is(FN_FIXED_EXTRA));
  }

  void WriteSizes(const StkFunction& function) {
    const std::string frameText = FrameSizeText(function);
    const std::string totalText = TotalSizeText(function);
    Size("frameSize", function.frameSize, frameText);
    Size("totalStackSize", function.totalStackSize, totalText);
    Text("frameText", frameText);
    Text("totalText", totalText);
    Text("adjustmentText", AdjustmentInfoText(function, AdjustmentStyle::kList));
    Number("librarySize", function.librarySize);
    writer_.Key("chainCount");
    writer_.Int(function.chainCount);
  }

  void WriteAdjustment(const StkFunction& function) {
    const StkAppliedAdjustment* adjustment = function.adjustment.get();
    if (adjustment != nullptr && adjustment->margin != kNoMargin) {
      Number("margin", adjustment->margin);
    } else {
      Null("margin");
    }
    if (adjustment != nullptr && adjustment->depth != kNoDepth) {
      Number("depth", adjustment->depth);
    } else {
      Null("depth");
    }
    Bool("adjusted", adjustment != nullptr);
  }

  static std::string_view Kind(const StkFunction& function) {
    if (function.adjustment != nullptr || function.Is(FN_LIBRARY)) {
      return "specified";
    }
    if (function.Is(FN_RECURSIVE)) {
      return "recursive";
    }
    return function.Is(FN_DEFINED) ? "defined" : "unknown";
  }

  // A size is a number exactly where its text is one.
  void Size(const char* key, uint32_t size, std::string_view text) {
    if (text == "?" || size == kOverSize) {
      Null(key);
    } else {
      Number(key, size);
    }
  }

  void Indices(const char* key, const StkFunctionList& functions) {
    writer_.Key(key);
    writer_.StartArray();
    for (const StkFunction* function : functions) {
      writer_.Uint(function->index);
    }
    writer_.EndArray();
  }

  void Text(const char* key, std::string_view text) {
    writer_.Key(key);
    String(text);
  }

  void String(std::string_view text) {
    const std::string utf8 = result_.Utf8(text);
    writer_.String(utf8.data(), static_cast<rapidjson::SizeType>(utf8.size()));
  }

  void Number(const char* key, uint32_t number) {
    writer_.Key(key);
    writer_.Uint(number);
  }

  void Bool(const char* key, bool value) {
    writer_.Key(key);
    writer_.Bool(value);
  }

  void Null(const char* key) {
    writer_.Key(key);
    writer_.Null();
  }

  const AnalysisResult& result_;
  rapidjson::PrettyWriter<ResultOutput> writer_;
};

}  // namespace

void WriteJson(const AnalysisResult& result, ResultOutput& output) {
  JsonOutput(result, output).Write();
  output.Write("\n");
}

}  // namespace velkor
