#include "reports/gate/baseline.h"

#include <algorithm>
#include <map>
#include <rapidjson/document.h>
#include <rapidjson/error/en.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <tuple>

namespace velkor::reports {
namespace {

constexpr unsigned kBaselineSchema = 1;

using Json = rapidjson::Value;
using LineWriter = rapidjson::Writer<rapidjson::StringBuffer>;

using CauseKey = std::tuple<std::string_view, std::string_view, std::string_view>;

CauseKey WithFile(const Baseline::Cause& cause) {
  return {cause.rule, cause.name, {}};
}

// Rule, kind and the name alone.
CauseKey WithoutFile(const Baseline::Cause& cause) {
  const std::string_view name = cause.name;
  const size_t kind = std::min(name.find(' '), name.size());
  const size_t file = name.rfind('#');
  return {cause.rule, name.substr(0, kind),
          name.substr(file == name.npos ? std::min(kind + 1, name.size()) : file + 1)};
}

std::map<CauseKey, size_t> Counts(const std::vector<Baseline::Cause>& causes,
                                  CauseKey (*key)(const Baseline::Cause&)) {
  std::map<CauseKey, size_t> counts;
  for (const Baseline::Cause& cause : causes) {
    ++counts[key(cause)];
  }
  return counts;
}

void Write(LineWriter& json, std::string_view text) {
  json.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

void Write(LineWriter& json, const char* key, std::string_view text) {
  json.Key(key);
  Write(json, text);
}

void Write(LineWriter& json, const char* key, const std::vector<std::string>& texts) {
  json.Key(key);
  json.StartArray();
  for (const std::string& text : texts) {
    Write(json, text);
  }
  json.EndArray();
}

void Write(LineWriter& json, const Baseline::Stack& stack) {
  json.StartObject();
  Write(json, "name", stack.name);
  json.Key("bounded");
  json.Bool(stack.bounded);
  json.Key("bytes");
  json.Uint64(stack.known);
  Write(json, "entries", stack.entries);
  json.Key("path");
  json.StartArray();
  for (const auto& [function, bytes] : stack.path) {
    json.StartArray();
    Write(json, function);
    json.Uint64(bytes);
    json.EndArray();
  }
  json.EndArray();
  json.EndObject();
}

void Write(LineWriter& json, const Baseline::Cause& cause) {
  json.StartObject();
  Write(json, "rule", cause.rule);
  Write(json, "name", cause.name);
  if (!cause.stacks.empty()) {
    Write(json, "stacks", cause.stacks);
  }
  json.EndObject();
}

template <typename Item>
std::string ItemLine(const Item& item) {
  rapidjson::StringBuffer buffer;
  LineWriter json(buffer);
  Write(json, item);
  return {buffer.GetString(), buffer.GetSize()};
}

// "key": [ and the items, one a line.
template <typename Item>
std::string ItemLines(const char* key, const std::vector<Item>& items) {
  std::string text = "\"" + std::string(key) + "\": [";
  for (size_t i = 0; i < items.size(); ++i) {
    text += (i == 0 ? "\n" : ",\n") + ItemLine(items[i]);
  }
  return text + "\n]";
}

class BaselineReader {
 public:
  ReadBaselineResult Read(std::string_view text) {
    rapidjson::Document json;
    json.Parse<rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag>(text.data(),
                                                                                       text.size());
    if (json.HasParseError()) {
      return {std::nullopt, PlaceOf(text, json.GetErrorOffset()),
              "no whole JSON: " + std::string(rapidjson::GetParseError_En(json.GetParseError()))};
    }
    if (!json.IsObject() || !json.HasMember("stacks") || !json.HasMember("causes")) {
      return Fault("no baseline");
    }
    if (!json.HasMember("schema") || !json["schema"].IsUint() ||
        json["schema"].GetUint() != kBaselineSchema) {
      return Fault("this velkor knows schema 1 of a baseline only");
    }
    baseline_.project = Text(json, "project");
    baseline_.commit = Text(json, "commit");
    baseline_.compiler = Text(json, "compiler");
    baseline_.handlers = Texts(json, "handlers");
    ForEach(json, "stacks", [this](const Json& stack) { TakeStack(stack); });
    ForEach(json, "causes", [this](const Json& cause) {
      baseline_.causes.push_back(
          {Text(cause, "rule"), Text(cause, "name"), Texts(cause, "stacks")});
    });
    if (isWrong_) {
      return Fault("a value is missing, or of another type than in a baseline");
    }
    std::ranges::sort(baseline_.stacks, {}, &Baseline::Stack::name);
    std::ranges::sort(baseline_.causes);
    return {std::move(baseline_), {}, {}};
  }

 private:
  static ReadBaselineResult Fault(std::string text) {
    return {std::nullopt, {1, 1}, std::move(text)};
  }

  static TextPlace PlaceOf(std::string_view text, size_t offset) {
    const std::string_view before = text.substr(0, std::min(offset, text.size()));
    const size_t line = before.rfind('\n');
    return {static_cast<uint32_t>(std::ranges::count(before, '\n') + 1),
            static_cast<uint32_t>(before.size() - (line == before.npos ? 0 : line + 1) + 1)};
  }

  std::string TextOf(const Json& value) {
    isWrong_ = isWrong_ || !value.IsString();
    return value.IsString() ? std::string(value.GetString(), value.GetStringLength())
                            : std::string();
  }

  std::string Text(const Json& object, const char* key) {
    isWrong_ = isWrong_ || !object.IsObject() || !object.HasMember(key);
    return isWrong_ ? std::string() : TextOf(object[key]);
  }

  template <typename Take>
  void ForEach(const Json& object, const char* key, Take take) {
    if (!object.IsObject() || !object.HasMember(key)) {
      return;
    }
    isWrong_ = isWrong_ || !object[key].IsArray();
    if (object[key].IsArray()) {
      for (const Json& each : object[key].GetArray()) {
        take(each);
      }
    }
  }

  std::vector<std::string> Texts(const Json& object, const char* key) {
    std::vector<std::string> texts;
    ForEach(object, key, [&](const Json& text) { texts.push_back(TextOf(text)); });
    return texts;
  }

  uint64_t NumberOf(const Json& value) {
    isWrong_ = isWrong_ || !value.IsUint64();
    return value.IsUint64() ? value.GetUint64() : 0;
  }

  void TakeStack(const Json& json) {
    Baseline::Stack& stack = baseline_.stacks.emplace_back();
    stack.name = Text(json, "name");
    stack.entries = Texts(json, "entries");
    isWrong_ = isWrong_ || !json.HasMember("bytes") || !json.HasMember("bounded") ||
               !json["bounded"].IsBool();
    if (isWrong_) {
      return;
    }
    stack.known = NumberOf(json["bytes"]);
    stack.bounded = json["bounded"].GetBool();
    ForEach(json, "path", [&](const Json& row) {
      isWrong_ = isWrong_ || !row.IsArray() || row.Size() != 2;
      if (!isWrong_) {
        stack.path.emplace_back(TextOf(row[0]), NumberOf(row[1]));
      }
    });
  }

  Baseline baseline_;
  bool isWrong_ = false;
};

}  // namespace

const Baseline::Stack* Baseline::Find(std::string_view stack) const {
  const auto found = std::ranges::find(stacks, stack, &Stack::name);
  return found == stacks.end() ? nullptr : &*found;
}

std::vector<bool> Baseline::Holds(const std::vector<Cause>& asked) const {
  const auto whole = Counts(causes, WithFile);
  const auto alone = Counts(causes, WithoutFile);
  const auto aloneHere = Counts(asked, WithoutFile);
  std::vector<bool> held;
  held.reserve(asked.size());
  for (const Cause& cause : asked) {
    const CauseKey key = WithoutFile(cause);
    const auto only = alone.find(key);
    const bool isOnly = only != alone.end() && only->second == 1 && aloneHere.at(key) == 1;
    held.push_back(whole.contains(WithFile(cause)) || isOnly);
  }
  return held;
}

std::string BaselineText(const Baseline& baseline) {
  rapidjson::StringBuffer buffer;
  LineWriter json(buffer);
  const auto head = [&](const char* key, std::string_view value) {
    buffer.Clear();
    json.Reset(buffer);
    Write(json, value);
    return "\"" + std::string(key) + "\": " + buffer.GetString() + ",\n";
  };
  return "{\"schema\": " + std::to_string(kBaselineSchema) + ",\n" +
         head("project", baseline.project) + head("commit", baseline.commit) +
         head("compiler", baseline.compiler) + ItemLines("stacks", baseline.stacks) + ",\n" +
         ItemLines("handlers", baseline.handlers) + ",\n" + ItemLines("causes", baseline.causes) +
         "}\n";
}

ReadBaselineResult ReadBaseline(std::string_view text) {
  return BaselineReader().Read(text);
}

}  // namespace velkor::reports
