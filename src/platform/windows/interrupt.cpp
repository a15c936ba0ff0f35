#include "platform/interrupt.h"

#include <cstdlib>
#include <mutex>
#include <utility>
#include <windows.h>

namespace velkor {
namespace {

constexpr UINT kInterruptedStatus = 130;

// The system calls a plain function, in a thread that it makes for each request: here it finds what
// to do. None when nobody catches requests.
struct Caught {
  std::mutex mutex;
  const std::function<void()>* action = nullptr;
  bool requested = false;
};

Caught& TheCaught() {
  static Caught caught;
  return caught;
}

BOOL WINAPI OnRequest(DWORD request) {
  {
    Caught& caught = TheCaught();
    const std::lock_guard lock(caught.mutex);
    if (caught.action == nullptr) {
      return FALSE;
    }
    if (caught.requested) {
      TerminateProcess(GetCurrentProcess(), kInterruptedStatus);
    }
    caught.requested = true;
    (*caught.action)();
  }
  if (request != CTRL_C_EVENT && request != CTRL_BREAK_EVENT) {
    Sleep(INFINITE);  // the window closes or the user leaves: the end comes with the return
  }
  return TRUE;
}

}  // namespace

class Interrupt::Watch {
 public:
  explicit Watch(std::function<void()> action) : action_(std::move(action)) {
    Set(&action_);
    SetConsoleCtrlHandler(OnRequest, TRUE);
  }
  ~Watch() {
    SetConsoleCtrlHandler(OnRequest, FALSE);
    Set(nullptr);
  }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

 private:
  static void Set(const std::function<void()>* action) {
    Caught& caught = TheCaught();
    const std::lock_guard lock(caught.mutex);
    caught.action = action;
    caught.requested = false;
  }

  const std::function<void()> action_;
};

Interrupt::Interrupt(std::function<void()> action)
    : watch_(std::make_unique<Watch>(std::move(action))) {}

Interrupt::~Interrupt() = default;

}  // namespace velkor
