#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace velkor::reports {

// Where a result goes, standard output or a file: takes it in parts and remembers the first
// failure. Also what the JSON writer calls a stream.
class ResultOutput {
 public:
  using Ch = char;
  // False when not all of it could be written.
  using Sink = std::function<bool(std::string_view)>;

  explicit ResultOutput(std::FILE* file);
  explicit ResultOutput(Sink sink) : sink_(std::move(sink)) {}
  ResultOutput(const ResultOutput&) = delete;
  ResultOutput& operator=(const ResultOutput&) = delete;

  void Write(std::string_view text);
  void Put(char c);
  void Flush() {}

  // Brings everything there. False when any of it could not be written, unless its reader has seen
  // enough and has closed the pipe; for a file of the host Failure says why.
  bool Finish();
  const std::string& Failure() const { return failure_; }

 private:
  void WriteBuffer();

  Sink sink_;
  std::string buffer_;
  bool failed_ = false;
  bool readerGone_ = false;
  std::string failure_;
};

}  // namespace velkor::reports
