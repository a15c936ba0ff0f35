#pragma once

#include <string>
#include <thread>

namespace velkor::testing {

// Where a program's standard error goes: a file, or a terminal whose text is copied into the file.
class ErrorFile {
 public:
  ErrorFile(const std::string& path, bool isTerminal);
  ~ErrorFile();
  ErrorFile(const ErrorFile&) = delete;
  ErrorFile& operator=(const ErrorFile&) = delete;

  // For the program; in this process it goes with BeginCopying.
  int Descriptor() const { return descriptor_; }
  // After the program has been started.
  void BeginCopying();
  // After it has ended.
  void EndCopying();

 private:
  int file_;
  int master_ = -1;
  int descriptor_;
  std::thread copying_;
};

}  // namespace velkor::testing
