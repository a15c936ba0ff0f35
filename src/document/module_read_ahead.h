#pragma once

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <memory>
#include <mutex>
#include <vector>

#include "core/string_list.h"
#include "platform/event.h"
#include "platform/worker_thread.h"
#include "readers/program_input.h"

namespace velkor {

// Reads the modules of an input by several threads, a few modules ahead of its owner, who is handed
// each in the order of the list and sees no difference to reading them one by one: a module that
// cannot be opened or read shows when its turn comes. The owner's thread reads too instead of
// waiting; with one thread it alone reads, and nothing before its turn. A file is open while it is
// read and no longer. The destructor lets the modules that are being read end; with the stop event
// set, that is soon.
class ModuleReadAhead {
 public:
  // threads: how many read, 0 for as many as run at once. input and stopEvent outlive it.
  ModuleReadAhead(ProgramInput& input, size_t threads, Event& stopEvent);
  ~ModuleReadAhead();
  ModuleReadAhead(const ModuleReadAhead&) = delete;
  ModuleReadAhead& operator=(const ModuleReadAhead&) = delete;

  // The owner's thread, for module 0, then 1 and so on: Open waits until the file is open, Read,
  // only when it could be opened, until it has been read. Both throw what the reading threw.
  // A path that is too long fails without a try.
  FileFailure Open(size_t module);
  // What has read it, ready to enter it; until the next Open.
  ModuleReader& Read();

 private:
  enum class Stage { kWaiting, kOpen, kDone };

  // A module that is being read or waits to be handed out. Written by the thread that reads it;
  // the stage, under the mutex, tells when others may look.
  struct Slot {
    Stage stage = Stage::kWaiting;
    std::unique_ptr<ModuleReader> reader;
    FileFailure opening{};
    std::exception_ptr failure;
  };

  void Work();
  // Under the mutex, of the next module that nobody reads yet: whether its turn is near enough,
  // making it the caller's to read, and reading it, the mutex released meanwhile.
  bool MayBeRead() const;
  size_t Claim();
  void ReadNext(std::unique_lock<std::mutex>& lock);
  void OpenFile(size_t module);
  void ReadFile(Slot& slot);
  void SetStage(Slot& slot, Stage stage);
  // Reads other modules until the current one has come so far.
  void WaitFor(Stage stage);
  Slot& SlotOf(size_t module) { return slots_[module % slots_.size()]; }

  const StkStringList& paths_;
  const size_t mostPathLength_;
  Event& stopEvent_;
  std::vector<Slot> slots_;
  bool ownerReads_ = false;  // the current module

  std::mutex mutex_;
  std::condition_variable changed_;
  size_t current_ = 0;  // the module that the owner was handed last
  size_t next_ = 0;     // the first module that nobody reads yet
  bool ended_ = false;
  std::vector<std::unique_ptr<WorkerThread>> threads_;
};

}  // namespace velkor
