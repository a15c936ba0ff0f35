#include "program.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "scratch_folder.h"
#include "support/json_schema.h"
#include "terminal.h"

namespace velkor::testing {

bool ProgramRun::Says(std::string_view line) const {
  return ("\n" + err).find("\n" + std::string(line) + "\n") != std::string::npos;
}

ProgramRun Program::Run() {
  const ScratchFolder scratch;
  const std::string out = scratch.Path("out");
  const std::string err = scratch.Path("err");
  ErrorFile errors(err, errorsToTerminal_);
  const pid_t process = fork();
  if (process == 0) {
    Become(out, errors.Descriptor());
  }
  errors.BeginCopying();
  ProgramRun run;
  run.status = Wait(process, err);
  errors.EndCopying();
  run.out = ReadFile(out);
  run.err = ReadFile(err);
  const bool isSarif = std::ranges::find(arguments_, "sarif") != arguments_.end();
  if (run.out.starts_with('{') && !isSarif && HasSchema(arguments_.front())) {
    EXPECT_EQ(SchemaFault(arguments_.front(), run.out), "");
  }
  return run;
}

void Program::Become(const std::string& out, int errorFile) const {
  constexpr int kNotStarted = 127;
  constexpr unsigned kNobody = 65534;
  dup2(errorFile, STDERR_FILENO);
  ConnectInput();
  ConnectOutput(out);
  for (const auto& [variable, value] : environment_) {
    setenv(variable.c_str(), value.c_str(), 1);
  }
  signal(SIGINT, SIG_DFL);
  signal(SIGPIPE, SIG_DFL);
  if (chdir(folder_.c_str()) != 0) {
    _exit(kNotStarted);
  }
  if (withoutRights_ && geteuid() == 0 &&
      (setgroups(0, nullptr) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0)) {
    _exit(kNotStarted);
  }
  std::vector<char*> argv = {const_cast<char*>(VELKOR_PROGRAM)};
  for (const std::string& argument : arguments_) {
    argv.push_back(const_cast<char*>(argument.c_str()));
  }
  argv.push_back(nullptr);
  execv(VELKOR_PROGRAM, argv.data());
  _exit(kNotStarted);
}

void Program::ConnectInput() const {
  if (!input_) {
    return;
  }
  std::FILE* file = std::tmpfile();
  std::fwrite(input_->data(), 1, input_->size(), file);
  std::rewind(file);
  dup2(fileno(file), STDIN_FILENO);
}

void Program::ConnectOutput(const std::string& out) const {
  if (output_ == kClosed) {
    close(STDOUT_FILENO);
    return;
  }
  int ends[2] = {-1, -1};
  if (output_ == kBrokenPipe) {
    if (pipe(ends) != 0) {
      return;
    }
    close(ends[0]);
  } else {
    ends[1] = open(output_.value_or(out).c_str(), O_WRONLY | O_CREAT, 0600);
  }
  dup2(ends[1], STDOUT_FILENO);
  close(ends[1]);
}

int Program::Wait(int process, const std::string& err) const {
  constexpr int kEndedBySignal = 1000;
  int status = 0;
  if (lifetime_) {
    std::this_thread::sleep_for(*lifetime_);
    kill(process, SIGKILL);
  }
  bool sent = signalNumber_ == 0;
  while (waitpid(process, &status, sent ? 0 : WNOHANG) == 0) {
    if (ReadFile(err).find(signalText_) != std::string::npos) {
      kill(process, signalNumber_);
      sent = true;
    } else {
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : kEndedBySignal + WTERMSIG(status);
}

}  // namespace velkor::testing
