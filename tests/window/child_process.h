#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace velkor::testing {

using Environment = std::map<std::string, std::string>;

// A program that runs beside the test, and no longer than it: killed with the object.
class ChildProcess {
 public:
  // Standard output and standard error go to the file. The variables come on top of the test's.
  ChildProcess(const std::vector<std::string>& command, const Environment& environment,
               const std::string& outputPath);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  // The exit status, 1000 plus the signal when one ended it, or nothing while it runs.
  std::optional<int> Status();
  std::optional<int> WaitFor(std::chrono::milliseconds time);

 private:
  int process_ = -1;
  std::optional<int> status_;
};

}  // namespace velkor::testing
