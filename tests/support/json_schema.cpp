#include "support/json_schema.h"

#include <fstream>
#include <map>
#include <memory>
#include <rapidjson/document.h>
#include <rapidjson/schema.h>
#include <rapidjson/stringbuffer.h>
#include <sstream>

namespace velkor::testing {

namespace {

using rapidjson::Value;

std::string PathOf(const std::string& command) {
  return std::string(VELKOR_SOURCE_DIR) + "/src/resources/schema/" + command + ".schema.json";
}

// A reader must take keys that it does not know; what is written is to hold none.
void Close(Value& schema, rapidjson::Document& document) {
  if (!schema.IsObject()) {
    return;
  }
  for (auto& member : schema.GetObject()) {
    Close(member.value, document);
  }
  if (schema.HasMember("properties") && schema["properties"].IsObject()) {
    schema.AddMember("additionalProperties", false, document.GetAllocator());
  }
}

const rapidjson::SchemaDocument& SchemaOf(const std::string& command) {
  static std::map<std::string, std::unique_ptr<rapidjson::SchemaDocument>> schemas;
  std::unique_ptr<rapidjson::SchemaDocument>& schema = schemas[command];
  if (schema == nullptr) {
    std::ostringstream text;
    text << std::ifstream(PathOf(command)).rdbuf();
    rapidjson::Document document;
    document.Parse(text.str().c_str());
    Close(document, document);
    schema = std::make_unique<rapidjson::SchemaDocument>(document);
  }
  return *schema;
}

std::string Text(const rapidjson::Pointer& pointer) {
  rapidjson::StringBuffer buffer;
  pointer.StringifyUriFragment(buffer);
  return buffer.GetString();
}

}  // namespace

bool HasSchema(const std::string& command) {
  return std::ifstream(PathOf(command)).good();
}

std::string SchemaFault(const std::string& command, const std::string& json) {
  rapidjson::SchemaValidator validator(SchemaOf(command));
  rapidjson::Reader reader;
  rapidjson::StringStream stream(json.c_str());
  reader.Parse<rapidjson::kParseValidateEncodingFlag>(stream, validator);
  if (!validator.IsValid()) {
    return Text(validator.GetInvalidDocumentPointer()) + " breaks " +
           validator.GetInvalidSchemaKeyword() + " of " + Text(validator.GetInvalidSchemaPointer());
  }
  return reader.HasParseError() ? "no JSON at byte " + std::to_string(reader.GetErrorOffset()) : "";
}

}  // namespace velkor::testing
