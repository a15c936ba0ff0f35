#include "platform/interrupt.h"

#include <atomic>
#include <cstdlib>
#include <initializer_list>
#include <pthread.h>
#include <signal.h>
#include <thread>
#include <utility>

namespace velkor {
namespace {

constexpr int kInterruptedStatus = 130;

bool IsIgnored(int signalNumber) {
  struct sigaction current {};
  return sigaction(signalNumber, nullptr, &current) == 0 && current.sa_handler == SIG_IGN;
}

}  // namespace

class Interrupt::Watch {
 public:
  explicit Watch(std::function<void()> action);
  ~Watch();
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

 private:
  void WaitForRequests();

  std::function<void()> action_;
  sigset_t caught_;
  sigset_t before_;
  std::atomic<bool> finished_{false};
  std::thread thread_;
};

Interrupt::Watch::Watch(std::function<void()> action) : action_(std::move(action)) {
  sigemptyset(&caught_);
  for (const int signalNumber : {SIGINT, SIGTERM}) {
    if (!IsIgnored(signalNumber)) {
      sigaddset(&caught_, signalNumber);
    }
  }
  // Threads inherit the mask of the one that makes them, so that only the waiting thread takes
  // these signals. SIGUSR2 is how the destructor wakes it.
  sigset_t blocked = caught_;
  sigaddset(&blocked, SIGUSR2);
  pthread_sigmask(SIG_BLOCK, &blocked, &before_);
  thread_ = std::thread([this] { WaitForRequests(); });
}

Interrupt::Watch::~Watch() {
  finished_ = true;
  pthread_kill(thread_.native_handle(), SIGUSR2);
  thread_.join();
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

void Interrupt::Watch::WaitForRequests() {
  sigset_t awaited = caught_;
  sigaddset(&awaited, SIGUSR2);
  bool requested = false;
  while (!finished_) {
    int signalNumber = 0;
    if (sigwait(&awaited, &signalNumber) != 0 || signalNumber == SIGUSR2) {
      continue;
    }
    if (requested) {
      std::_Exit(kInterruptedStatus);
    }
    requested = true;
    action_();
  }
}

Interrupt::Interrupt(std::function<void()> action)
    : watch_(std::make_unique<Watch>(std::move(action))) {}

Interrupt::~Interrupt() = default;

}  // namespace velkor
