#include "platform/terminal.h"

#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <optional>
#include <windows.h>

#include "platform/host_program.h"

namespace velkor {
namespace {

std::optional<DWORD> ModeOf(DWORD stream) {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(stream), &mode) != 0 ? std::optional(mode) : std::nullopt;
}

// What this program prints is UTF-8; those before and after it in the same window may print in
// another set.
class Utf8Console {
 public:
  Utf8Console() : before_(GetConsoleOutputCP()) { SetConsoleOutputCP(CP_UTF8); }
  ~Utf8Console() { SetConsoleOutputCP(before_); }
  Utf8Console(const Utf8Console&) = delete;
  Utf8Console& operator=(const Utf8Console&) = delete;

 private:
  const UINT before_;
};

}  // namespace

void PrepareStandardStreams() {
  for (std::FILE* const stream : {stdin, stdout, stderr}) {
    _setmode(_fileno(stream), _O_BINARY);
  }
  if (IsOutputTerminal() || IsErrorTerminal()) {
    static const Utf8Console untilTheEnd;
  }
}

bool IsErrorTerminal() {
  return ModeOf(STD_ERROR_HANDLE).has_value();
}

bool MayDrawOnErrorTerminal() {
  const std::optional<DWORD> mode = ModeOf(STD_ERROR_HANDLE);
  const bool refused =
      !EnvironmentVariable("NO_COLOR").empty() || EnvironmentVariable("TERM") == "dumb";
  return mode && !refused &&
         SetConsoleMode(GetStdHandle(STD_ERROR_HANDLE),
                        *mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

bool IsOutputTerminal() {
  return ModeOf(STD_OUTPUT_HANDLE).has_value();
}

size_t ErrorTerminalWidth() {
  CONSOLE_SCREEN_BUFFER_INFO info{};
  const bool known = GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &info) != 0 &&
                     info.srWindow.Right > info.srWindow.Left;
  return known ? static_cast<size_t>(info.srWindow.Right - info.srWindow.Left) + 1 : 80;
}

}  // namespace velkor
