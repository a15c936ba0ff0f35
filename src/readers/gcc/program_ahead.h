#pragma once

#include <exception>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

#include "platform/host.h"
#include "platform/worker_thread.h"
#include "readers/gcc/linked_program.h"

namespace velkor {

// Reads the linked program of an input in a thread of its own, while its owner reads other files;
// where only one thread is to work, when it is asked for. The destructor does not wait for more of
// a program that nobody has taken than a few functions.
class ProgramAhead {
 public:
  struct Result {
    bool isOpened = false;
    bool isCutShort = false;
    std::unique_ptr<LinkedProgram> program;  // none: it could not be opened
  };

  // Begins. path: of the host.
  ProgramAhead(Host& host, std::string path);
  ~ProgramAhead();
  ProgramAhead(const ProgramAhead&) = delete;
  ProgramAhead& operator=(const ProgramAhead&) = delete;

  // Waits for it; once. Throws what the reading threw.
  Result Take();

 private:
  void Read();

  Host& host_;
  const std::string path_;
  std::stop_source unwanted_;
  Result result_;
  std::exception_ptr failure_;
  std::vector<std::unique_ptr<WorkerThread>> thread_;  // or none
};

}  // namespace velkor
