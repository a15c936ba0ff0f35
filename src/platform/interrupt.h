#pragma once

#include <functional>
#include <memory>

namespace velkor {

// Catches what asks the program to stop (Ctrl-C, a termination request) for as long as it lives.
// The action runs in a thread of its own, at most once: it may lock, allocate and post. A second
// request ends the program at once with status 130. A request that the program was started to
// ignore stays ignored. To be made before any other thread; at most one at a time.
class Interrupt {
 public:
  explicit Interrupt(std::function<void()> action);
  // Requests have their ordinary effect again afterwards.
  ~Interrupt();
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;

 private:
  class Watch;

  std::unique_ptr<Watch> watch_;
};

}  // namespace velkor
