#include "child_process.h"

#include <cstdlib>
#include <fcntl.h>
#include <signal.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace velkor::testing {

namespace {

constexpr int kNotStarted = 127;
constexpr int kEndedBySignal = 1000;

[[noreturn]] void Become(const std::vector<std::string>& command, const Environment& environment,
                         const std::string& outputPath) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  const int output = open(outputPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  dup2(output, STDOUT_FILENO);
  dup2(output, STDERR_FILENO);
  close(output);
  for (const auto& [variable, value] : environment) {
    setenv(variable.c_str(), value.c_str(), 1);
  }
  std::vector<char*> argv;
  for (const std::string& argument : command) {
    argv.push_back(const_cast<char*>(argument.c_str()));
  }
  argv.push_back(nullptr);
  execvp(argv.front(), argv.data());
  _exit(kNotStarted);
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command, const Environment& environment,
                           const std::string& outputPath) {
  process_ = fork();
  if (process_ == 0) {
    Become(command, environment, outputPath);
  }
  if (process_ < 0) {
    throw std::runtime_error("cannot start " + command.front());
  }
}

ChildProcess::~ChildProcess() {
  if (!Status()) {
    kill(process_, SIGTERM);
    if (!WaitFor(std::chrono::seconds(2))) {
      kill(process_, SIGKILL);
      waitpid(process_, nullptr, 0);
    }
  }
}

std::optional<int> ChildProcess::Status() {
  int status = 0;
  if (!status_ && waitpid(process_, &status, WNOHANG) == process_) {
    status_ = WIFEXITED(status) ? WEXITSTATUS(status) : kEndedBySignal + WTERMSIG(status);
  }
  return status_;
}

std::optional<int> ChildProcess::WaitFor(std::chrono::milliseconds time) {
  const auto end = std::chrono::steady_clock::now() + time;
  while (!Status() && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return status_;
}

}  // namespace velkor::testing
