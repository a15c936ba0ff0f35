#pragma once

#include <cstdint>
#include <optional>
#include <rapidjson/prettywriter.h>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "reports/result_output.h"

namespace velkor::reports {

// Writes one JSON value in UTF-8, a member a line, arrays of anything but objects on one line.
class JsonWriter {
 public:
  explicit JsonWriter(ResultOutput& output) : output_(output), json_(output) {
    json_.SetIndent(' ', 1);
    json_.SetFormatOptions(rapidjson::kFormatSingleLineArray);
  }

  void StartObject() { json_.StartObject(); }
  void StartObject(const char* key) {
    json_.Key(key);
    json_.StartObject();
  }
  void EndObject() { json_.EndObject(); }
  void StartArray() { json_.StartArray(); }
  void StartArray(const char* key) {
    json_.Key(key);
    json_.StartArray();
  }
  void EndArray() { json_.EndArray(); }

  void Text(const char* key, std::string_view text) {
    json_.Key(key);
    Text(text);
  }
  void Text(std::string_view text) {
    json_.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
  }
  void TextOrNull(const char* key, std::string_view text) {
    json_.Key(key);
    if (text.empty()) {
      json_.Null();
    } else {
      Text(text);
    }
  }
  void Number(const char* key, uint64_t number) {
    json_.Key(key);
    json_.Uint64(number);
  }
  void NumberOrNull(const char* key, bool isNumber, uint64_t number) {
    json_.Key(key);
    if (isNumber) {
      json_.Uint64(number);
    } else {
      json_.Null();
    }
  }
  void SignedOrNull(const char* key, std::optional<int64_t> number) {
    json_.Key(key);
    if (number) {
      json_.Int64(*number);
    } else {
      json_.Null();
    }
  }
  void Bool(const char* key, bool value) {
    json_.Key(key);
    json_.Bool(value);
  }
  void Null(const char* key) {
    json_.Key(key);
    json_.Null();
  }

  // Elements of the array that was started last, which gets no others, as another writer has
  // written them there; with kBetweenElements before all but the first.
  static constexpr std::string_view kBetweenElements = ", ";
  void Elements(std::string_view text) { output_.Write(text); }

  void Texts(const char* key, const std::vector<std::string>& texts) {
    StartArray(key);
    for (const std::string& text : texts) {
      Text(text);
    }
    EndArray();
  }
  void Indices(const char* key, std::span<const uint32_t> functions) {
    StartArray(key);
    for (const uint32_t function : functions) {
      json_.Uint(function);
    }
    EndArray();
  }

 private:
  ResultOutput& output_;
  rapidjson::PrettyWriter<ResultOutput> json_;
};

}  // namespace velkor::reports
