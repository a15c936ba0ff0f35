#pragma once

#include <cstdint>
#include <rapidjson/prettywriter.h>
#include <string>
#include <string_view>
#include <vector>

#include "core/function.h"
#include "platform/code_page.h"
#include "reports/result_output.h"

namespace velkor::reports {

// Writes one JSON value in UTF-8, a member a line, arrays of anything but objects on one line.
// Texts are bytes of the code page.
class JsonWriter {
 public:
  JsonWriter(const CodePage& codePage, ResultOutput& output) : codePage_(codePage), json_(output) {
    json_.SetIndent(' ', 1);
    json_.SetFormatOptions(rapidjson::kFormatSingleLineArray);
  }

  void StartObject() { json_.StartObject(); }
  void StartObject(const char* key) {
    json_.Key(key);
    json_.StartObject();
  }
  void EndObject() { json_.EndObject(); }
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
    const std::string utf8 = codePage_.ToUtf8(text);
    json_.String(utf8.data(), static_cast<rapidjson::SizeType>(utf8.size()));
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
  void Bool(const char* key, bool value) {
    json_.Key(key);
    json_.Bool(value);
  }
  void Null(const char* key) {
    json_.Key(key);
    json_.Null();
  }

  void Indices(const char* key, const StkFunctionList& functions) {
    StartArray(key);
    for (const StkFunction* function : functions) {
      json_.Uint(function->index);
    }
    EndArray();
  }
  void Indices(const char* key, const std::vector<uint32_t>& functions) {
    StartArray(key);
    for (const uint32_t function : functions) {
      json_.Uint(function);
    }
    EndArray();
  }

 private:
  const CodePage& codePage_;
  rapidjson::PrettyWriter<ResultOutput> json_;
};

}  // namespace velkor::reports
