#pragma once

#include <string>

namespace velkor::manual {

std::string ReadFile(const std::string& path);
// Both throw std::runtime_error with the path when it cannot be done.
void WriteFile(const std::string& path, const std::string& text);

}  // namespace velkor::manual
