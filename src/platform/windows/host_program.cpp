#include "platform/host_program.h"

#include <algorithm>
#include <memory>
#include <thread>
#include <windows.h>

#include <shellapi.h>

#include "platform/windows/wide_path.h"
#include "platform/windows/wide_text.h"

namespace velkor {
namespace {

struct FreeLocal {
  void operator()(wchar_t** memory) const { LocalFree(memory); }
};

}  // namespace

// What main gets is in the system's code page, in which not every name can be given.
std::vector<std::string> ProgramArguments(int argc, const char* const* argv) {
  int count = 0;
  const std::unique_ptr<wchar_t*, FreeLocal> wide(CommandLineToArgvW(GetCommandLineW(), &count));
  if (wide == nullptr) {
    return {argv, argv + argc};
  }
  std::vector<std::string> arguments;
  std::transform(wide.get(), wide.get() + count, std::back_inserter(arguments),
                 [](const wchar_t* argument) { return FromWide(argument); });
  return arguments;
}

std::string EnvironmentVariable(const char* name) {
  const std::wstring wide(name, name + std::char_traits<char>::length(name));
  return FromWide(WideResult([&](wchar_t* buffer, unsigned size) {
    return GetEnvironmentVariableW(wide.c_str(), buffer, size);
  }));
}

HostPath ExecutableOfProgram() {
  constexpr size_t kLongest = 32768;
  std::wstring path(kLongest, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), kLongest));
  return HostPath(FromWide(path));
}

std::optional<HostPath> CurrentFolder() {
  HostPath folder(FromWide(WideResult(
      [](wchar_t* buffer, unsigned size) { return GetCurrentDirectoryW(size, buffer); })));
  return folder.Bytes().empty() ? std::nullopt : std::optional(std::move(folder));
}

size_t ProcessorsOfProgram() {
  return std::max(std::thread::hardware_concurrency(), 1U);
}

std::FILE* OpenStdioFile(const std::string& path, const char* mode) {
  const std::wstring wide = WidePath(HostPath(path));
  const std::wstring wideMode(mode, mode + std::char_traits<char>::length(mode));
  return wide.empty() ? nullptr : _wfopen(wide.c_str(), wideMode.c_str());
}

}  // namespace velkor
