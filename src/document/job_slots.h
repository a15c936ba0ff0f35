#pragma once

#include <algorithm>
#include <memory>
#include <utility>

#include "document/job.h"
#include "document/job_kind.h"

namespace velkor {

// A slot for each kind of job; a job class says its kind as kKind. User-interface thread.
class JobSlots {
 public:
  // Takes its slot and begins to work. One that is there still is stopped.
  template <typename Job>
  void Start(std::unique_ptr<Job> job) {
    slots_[Job::kKind] = std::move(job);
    slots_[Job::kKind]->Start();
  }
  // None when the slot is empty. A job that has ended stays until its slot is emptied.
  StkJob* Get(JobKind kind) const { return slots_[kind].get(); }
  template <typename Job>
  Job* Get() const {
    return static_cast<Job*>(Get(Job::kKind));
  }
  bool Has(JobKind kind) const { return slots_[kind] != nullptr; }
  bool HasAny() const {
    return std::ranges::any_of(kJobKinds, [this](JobKind kind) { return Has(kind); });
  }
  void Empty(JobKind kind) { slots_[kind].reset(); }

 private:
  OfEachJobKind<std::unique_ptr<StkJob>> slots_;
};

}  // namespace velkor
