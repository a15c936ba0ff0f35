#include "manual/file_output.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace velkor::manual {

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    throw std::runtime_error("cannot read " + path);
  }
  return {std::istreambuf_iterator<char>(file), {}};
}

void WriteFile(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  file.close();
  if (!file) {
    throw std::runtime_error("cannot write " + path);
  }
}

}  // namespace velkor::manual
