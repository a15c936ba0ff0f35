#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace velkor::bench {
namespace {

struct Cost {
  int64_t elapsed = 0;    // microseconds
  int64_t processor = 0;  // microseconds, of the user and of the system, on all cores
  int64_t peak = 0;       // kilobytes of memory
};

int64_t Microseconds(const timeval& time) {
  return int64_t{time.tv_sec} * 1000000 + time.tv_usec;
}

struct Order {
  int repeat = 5;
  int status = 0;  // what the command is to end with
  std::string output = "/dev/null";
  std::vector<std::string> command;
};

[[noreturn]] void Become(Order& order) {
  const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
  dup2(nowhere, STDIN_FILENO);
  dup2(nowhere, STDERR_FILENO);
  dup2(open(order.output.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666), STDOUT_FILENO);
  std::vector<char*> arguments;
  for (std::string& argument : order.command) {
    arguments.push_back(argument.data());
  }
  arguments.push_back(nullptr);
  execvp(arguments[0], arguments.data());
  _exit(127);
}

// None when the command did not end with the expected status.
std::optional<Cost> RunOnce(Order& order) {
  const auto start = std::chrono::steady_clock::now();
  const pid_t process = fork();
  if (process == 0) {
    Become(order);
  }
  int status = 0;
  rusage usage{};
  if (process < 0 || wait4(process, &status, 0, &usage) != process) {
    return std::nullopt;
  }
  const auto elapsed = std::chrono::steady_clock::now() - start;
  if (!WIFEXITED(status) || WEXITSTATUS(status) != order.status) {
    std::fprintf(stderr, "measure: %s ended with status %d\n", order.command[0].c_str(),
                 WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status));
    return std::nullopt;
  }
  return Cost{std::chrono::duration_cast<std::chrono::microseconds>(elapsed).count(),
              Microseconds(usage.ru_utime) + Microseconds(usage.ru_stime), usage.ru_maxrss};
}

Cost Least(const Cost& one, const Cost& other) {
  return {std::min(one.elapsed, other.elapsed), std::min(one.processor, other.processor),
          std::min(one.peak, other.peak)};
}

int Run(int argc, char** argv) {
  CLI::App application(
      "Runs a command several times, and prints the least of all runs: "
      "microseconds elapsed, microseconds of processor time, kilobytes of memory at most.");
  Order order;
  application.add_option("--repeat", order.repeat, "How often")->check(CLI::Range(1, 1000));
  application.add_option("--status", order.status, "What the command is to end with");
  application.add_option("--output", order.output, "Where its standard output goes");
  application.add_option("COMMAND", order.command)->required();
  application.positionals_at_end();
  CLI11_PARSE(application, argc, argv);

  std::optional<Cost> best;
  for (int run = 0; run < order.repeat; ++run) {
    const std::optional<Cost> cost = RunOnce(order);
    if (!cost) {
      return 1;
    }
    best = best ? Least(*best, *cost) : *cost;
  }
  std::printf("%lld %lld %lld\n", static_cast<long long>(best->elapsed),
              static_cast<long long>(best->processor), static_cast<long long>(best->peak));
  return 0;
}

}  // namespace
}  // namespace velkor::bench

int main(int argc, char** argv) {
  return velkor::bench::Run(argc, argv);
}
