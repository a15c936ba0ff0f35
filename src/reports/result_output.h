#pragma once

#include <cstddef>
#include <cstdio>
#include <functional>
#include <memory>
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
  void Put(char c) {
    if (size_ == kBufferSize) {
      WriteBuffer();
    }
    buffer_[size_++] = c;
  }
  void Flush() {}

  // Brings everything there. False when any of it could not be written, unless its reader has seen
  // enough and has closed the pipe; for a file of the host Failure says why.
  bool Finish();
  const std::string& Failure() const { return failure_; }

 private:
  static constexpr size_t kBufferSize = size_t{64} << 10;

  void WriteBuffer();

  Sink sink_;
  std::unique_ptr<char[]> buffer_ = std::make_unique_for_overwrite<char[]>(kBufferSize);
  size_t size_ = 0;
  bool failed_ = false;
  bool readerGone_ = false;
  std::string failure_;
};

}  // namespace velkor::reports
