#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
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
  int status = 0;  // what it is to end with
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

// The one in the middle; of an even count the lower one.
template <typename Number>
Number Median(std::vector<Number> numbers) {
  const auto middle = numbers.begin() + static_cast<std::ptrdiff_t>((numbers.size() - 1) / 2);
  std::nth_element(numbers.begin(), middle, numbers.end());
  return *middle;
}

int64_t MedianOf(const std::vector<Cost>& costs, int64_t Cost::*part) {
  std::vector<int64_t> numbers;
  for (const Cost& cost : costs) {
    numbers.push_back(cost.*part);
  }
  return Median(std::move(numbers));
}

// Of the ratios of runs that followed each other.
double MedianRatio(const std::vector<Cost>& costs, const std::vector<Cost>& references,
                   int64_t Cost::*part) {
  std::vector<double> ratios;
  for (size_t i = 0; i < costs.size(); ++i) {
    ratios.push_back(static_cast<double>(costs[i].*part) /
                     static_cast<double>(std::max<int64_t>(references[i].*part, 1)));
  }
  return Median(std::move(ratios));
}

// Of words in which "---" stands between two commands. A command may begin with where its output
// goes, ">FILE", and with what it is to end with, "=STATUS".
std::vector<Order> OrdersIn(const std::vector<std::string>& words) {
  std::vector<Order> orders(1);
  for (const std::string& word : words) {
    if (word == "---") {
      orders.emplace_back();
    } else if (orders.back().command.empty() && word.starts_with('>')) {
      orders.back().output = word.substr(1);
    } else if (orders.back().command.empty() && word.starts_with('=')) {
      orders.back().status = std::atoi(word.c_str() + 1);
    } else {
      orders.back().command.push_back(word);
    }
  }
  return orders;
}

int Run(int argc, char** argv) {
  CLI::App application(
      "Runs commands in turn, several times, and prints a line for each: the medians of "
      "microseconds elapsed, microseconds of processor time and kilobytes of memory at most, then "
      "how often the first two hold those of the first command in the same turn, as the median of "
      "all turns.");
  int repeat = 7;
  std::vector<std::string> words;
  application.add_option("--repeat", repeat, "How many turns")->check(CLI::Range(1, 1000));
  application
      .add_option("COMMAND", words,
                  "[>OUTPUT] [=STATUS] WORD..., several of them with --- between them")
      ->required();
  application.positionals_at_end();
  CLI11_PARSE(application, argc, argv);

  std::vector<Order> orders = OrdersIn(words);
  std::vector<std::vector<Cost>> costs(orders.size());
  for (int turn = 0; turn < repeat; ++turn) {
    for (size_t i = 0; i < orders.size(); ++i) {
      const std::optional<Cost> cost = RunOnce(orders[i]);
      if (!cost) {
        return 1;
      }
      costs[i].push_back(*cost);
    }
  }
  for (const std::vector<Cost>& some : costs) {
    std::printf(
        "%lld %lld %lld %.4f %.4f\n", static_cast<long long>(MedianOf(some, &Cost::elapsed)),
        static_cast<long long>(MedianOf(some, &Cost::processor)),
        static_cast<long long>(MedianOf(some, &Cost::peak)),
        MedianRatio(some, costs[0], &Cost::elapsed), MedianRatio(some, costs[0], &Cost::processor));
  }
  return 0;
}

}  // namespace
}  // namespace velkor::bench

int main(int argc, char** argv) {
  return velkor::bench::Run(argc, argv);
}
