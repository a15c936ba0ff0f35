#pragma once

#include "platform/event.h"

namespace velkor::testing {

// A job that a test can ask to stop at an exact moment of its work, from its own thread.
template <typename Job>
class Stoppable : public Job {
 public:
  using Job::Job;
  ~Stoppable() override { this->Stop(); }
  void RequestStop() { this->stopEvent_.Set(); }
};

}  // namespace velkor::testing
