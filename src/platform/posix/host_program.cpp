#include "platform/host_program.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sched.h>
#include <system_error>
#include <thread>

namespace velkor {

std::vector<std::string> ProgramArguments(int argc, const char* const* argv) {
  return {argv, argv + argc};
}

std::string EnvironmentVariable(const char* name) {
  // NOLINTNEXTLINE(concurrency-mt-unsafe): there is one thread
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

HostPath ExecutableOfProgram() {
  std::error_code error;
  const std::filesystem::path path = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? HostPath() : HostPath(path.string());
}

std::optional<HostPath> CurrentFolder() {
  std::error_code error;
  HostPath folder(std::filesystem::current_path(error).string());
  return error ? std::nullopt : std::optional(std::move(folder));
}

size_t ProcessorsOfProgram() {
  cpu_set_t allowed;
  CPU_ZERO(&allowed);
  // Fails on a machine with more processors than the set has room for.
  const int count = sched_getaffinity(0, sizeof allowed, &allowed) == 0
                        ? CPU_COUNT(&allowed)
                        : static_cast<int>(std::thread::hardware_concurrency());
  return static_cast<size_t>(std::max(count, 1));
}

std::FILE* OpenStdioFile(const std::string& path, const char* mode) {
  return std::fopen(path.c_str(), mode);
}

}  // namespace velkor
