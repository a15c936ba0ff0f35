#include "platform/terminal.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <initializer_list>
#include <signal.h>
#include <string_view>
#include <sys/ioctl.h>
#include <unistd.h>

namespace velkor {

void PrepareStandardStreams() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) {
      // The lowest free descriptor is this one. Open for the direction that is never used, so
      // that use fails.
      const int direction = descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY;
      if (open("/dev/null", direction) == -1) {
        return;
      }
    }
  }
  struct sigaction ignore {};
  ignore.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &ignore, nullptr);
  sigaction(SIGXFSZ, &ignore, nullptr);
}

bool IsErrorTerminal() {
  return isatty(STDERR_FILENO) == 1;
}

bool MayDrawOnErrorTerminal() {
  // NOLINTBEGIN(concurrency-mt-unsafe): at the start, when there is one thread
  const char* noColor = std::getenv("NO_COLOR");
  const char* terminal = std::getenv("TERM");
  // NOLINTEND(concurrency-mt-unsafe)
  const bool refused = noColor != nullptr && *noColor != '\0';
  const bool isDumb = terminal != nullptr && std::string_view(terminal) == "dumb";
  return IsErrorTerminal() && !refused && !isDumb;
}

bool IsOutputTerminal() {
  return isatty(STDOUT_FILENO) == 1;
}

size_t ErrorTerminalWidth() {
  winsize size{};
  if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
    return size.ws_col;
  }
  return 80;
}

}  // namespace velkor
