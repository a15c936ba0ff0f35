#include "program.h"

#include <cstdlib>
#include <fcntl.h>
#include <grp.h>
#include <signal.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "scratch_folder.h"

namespace velkor::testing {

bool ProgramRun::Says(std::string_view line) const {
  return ("\n" + err).find("\n" + std::string(line) + "\n") != std::string::npos;
}

Program& Program::In(const std::string& folder) {
  folder_ = folder;
  return *this;
}

Program& Program::WithoutRights() {
  withoutRights_ = true;
  return *this;
}

Program& Program::With(const std::string& variable, const std::string& value) {
  environment_[variable] = value;
  return *this;
}

Program& Program::OutputTo(const std::string& path) {
  output_ = Output::kFile;
  outputPath_ = path;
  return *this;
}

Program& Program::OutputClosed() {
  output_ = Output::kClosed;
  return *this;
}

Program& Program::OutputToBrokenPipe() {
  output_ = Output::kBrokenPipe;
  return *this;
}

Program& Program::SignalOn(std::string_view text, int signalNumber) {
  signalText_ = text;
  signalNumber_ = signalNumber;
  return *this;
}

Program& Program::KillAfter(std::chrono::microseconds time) {
  lifetime_ = time;
  return *this;
}

ProgramRun Program::Run() {
  const ScratchFolder scratch;
  const std::string out = scratch.Path("out");
  const std::string err = scratch.Path("err");
  const pid_t process = fork();
  if (process == 0) {
    Become(out, err);
  }
  ProgramRun run;
  run.status = Wait(process, err);
  run.out = ReadFile(out);
  run.err = ReadFile(err);
  return run;
}

void Program::Become(const std::string& out, const std::string& err) const {
  constexpr int kNotStarted = 127;
  constexpr unsigned kNobody = 65534;
  const int errorFile = open(err.c_str(), O_WRONLY | O_CREAT, 0600);
  dup2(errorFile, STDERR_FILENO);
  close(errorFile);
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

void Program::ConnectOutput(const std::string& out) const {
  switch (output_) {
    case Output::kClosed:
      close(STDOUT_FILENO);
      return;
    case Output::kBrokenPipe: {
      int ends[2];
      if (pipe(ends) == 0) {
        dup2(ends[1], STDOUT_FILENO);
        close(ends[0]);
        close(ends[1]);
      }
      return;
    }
    case Output::kFile:
    case Output::kCaptured: {
      const std::string& path = output_ == Output::kFile ? outputPath_ : out;
      const int file = open(path.c_str(), O_WRONLY | O_CREAT, 0600);
      dup2(file, STDOUT_FILENO);
      close(file);
      return;
    }
  }
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
