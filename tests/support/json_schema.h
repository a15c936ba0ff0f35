#pragma once

#include <string>

namespace velkor::testing {

// What is wrong with the JSON that a command prints ("analyze", "explain", "diff"), by the schema
// that is installed; a key that the schema does not name is wrong too. Empty: nothing.
std::string SchemaFault(const std::string& command, const std::string& json);

// The commands that print JSON.
bool HasSchema(const std::string& command);

}  // namespace velkor::testing
