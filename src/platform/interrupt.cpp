#include "platform/interrupt.h"

#include <cstdlib>
#include <initializer_list>
#include <pthread.h>
#include <signal.h>

namespace velkor {
namespace {

constexpr int kInterruptedStatus = 130;

bool IsIgnored(int signalNumber) {
  struct sigaction current {};
  return sigaction(signalNumber, nullptr, &current) == 0 && current.sa_handler == SIG_IGN;
}

}  // namespace

struct Interrupt::SignalMasks {
  sigset_t caught;
  sigset_t before;
};

Interrupt::Interrupt(std::function<void()> action)
    : action_(std::move(action)), masks_(std::make_unique<SignalMasks>()) {
  sigemptyset(&masks_->caught);
  for (const int signalNumber : {SIGINT, SIGTERM}) {
    if (!IsIgnored(signalNumber)) {
      sigaddset(&masks_->caught, signalNumber);
    }
  }
  // Threads inherit the mask of the one that makes them, so that only the waiting thread takes
  // these signals. SIGUSR2 is how the destructor wakes it.
  sigset_t blocked = masks_->caught;
  sigaddset(&blocked, SIGUSR2);
  pthread_sigmask(SIG_BLOCK, &blocked, &masks_->before);
  thread_ = std::thread([this] { WaitForRequests(); });
}

Interrupt::~Interrupt() {
  finished_ = true;
  pthread_kill(thread_.native_handle(), SIGUSR2);
  thread_.join();
  pthread_sigmask(SIG_SETMASK, &masks_->before, nullptr);
}

void Interrupt::WaitForRequests() {
  sigset_t awaited = masks_->caught;
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

}  // namespace velkor
