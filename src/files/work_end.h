#pragma once

namespace velkor {

// How a piece of work that can fail or be stopped ended: reading a module, writing a file, a job.
enum class WorkEnd {
  kCompleted,  // what it was to make is there
  kFailed,     // it is not, or not whole; reported by the worker unless it says otherwise
  kStopped,    // the stop came before it was done
};

}  // namespace velkor
