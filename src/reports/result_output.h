#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace velkor::reports {

// Standard output, or a file in its place: takes results as UTF-8 and remembers the first failure.
// Also what the JSON writer calls a stream.
class ResultOutput {
 public:
  using Ch = char;

  explicit ResultOutput(std::FILE* file) : file_(file) {}

  void Write(std::string_view text);
  void Put(char c);
  void Flush() {}

  // Brings everything to the file. False when any of it could not be written; Failure says why.
  bool Finish();
  const std::string& Failure() const { return failure_; }

 private:
  void WriteBuffer();

  std::FILE* file_;
  std::string buffer_;
  std::string failure_;
};

}  // namespace velkor::reports
