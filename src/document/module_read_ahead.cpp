#include "document/module_read_ahead.h"

#include <algorithm>


namespace velkor {

namespace {

constexpr size_t kModulesPerThread = 2;

}  // namespace

ModuleReadAhead::ModuleReadAhead(ProgramInput& input, size_t threads, Event& stopEvent)
    : paths_(input.Modules()),
      mostPathLength_(input.MostPathLength()),
      stopEvent_(stopEvent),
      slots_(std::min(ThreadCount(threads), paths_.size()) * kModulesPerThread) {
  for (Slot& slot : slots_) {
    slot.reader = input.MakeReader();
  }
  const size_t readers = slots_.size() / kModulesPerThread;
  threads_ = StartWorkers(readers - std::min<size_t>(readers, 1), [this] { Work(); });
}

ModuleReadAhead::~ModuleReadAhead() {
  {
    const std::lock_guard lock(mutex_);
    ended_ = true;
  }
  changed_.notify_all();
  threads_.clear();
}

void ModuleReadAhead::Work() {
  std::unique_lock lock(mutex_);
  while (!ended_ && next_ < paths_.size()) {
    if (MayBeRead()) {
      ReadNext(lock);
    } else {
      changed_.wait(lock);
    }
  }
}

bool ModuleReadAhead::MayBeRead() const {
  return next_ < paths_.size() && next_ < current_ + slots_.size();
}

FileFailure ModuleReadAhead::Open(size_t module) {
  {
    const std::lock_guard lock(mutex_);
    current_ = module;
    ownerReads_ = next_ == module;
    if (ownerReads_) {
      Claim();
    }
  }
  changed_.notify_all();
  if (ownerReads_) {
    OpenFile(module);
  } else {
    WaitFor(Stage::kOpen);
  }
  const Slot& slot = SlotOf(module);
  if (slot.opening != FileFailure::kNone && slot.failure) {
    std::rethrow_exception(slot.failure);
  }
  return slot.opening;
}

ModuleReader& ModuleReadAhead::Read() {
  Slot& slot = SlotOf(current_);
  if (ownerReads_) {
    ReadFile(slot);
  } else {
    WaitFor(Stage::kDone);
  }
  if (slot.failure) {
    std::rethrow_exception(slot.failure);
  }
  return *slot.reader;
}

void ModuleReadAhead::WaitFor(Stage stage) {
  const Slot& slot = SlotOf(current_);
  std::unique_lock lock(mutex_);
  while (slot.stage < stage) {
    if (MayBeRead()) {
      ReadNext(lock);
    } else {
      changed_.wait(lock);
    }
  }
}

size_t ModuleReadAhead::Claim() {
  SlotOf(next_).stage = Stage::kWaiting;
  return next_++;
}

void ModuleReadAhead::ReadNext(std::unique_lock<std::mutex>& lock) {
  const size_t module = Claim();
  lock.unlock();
  OpenFile(module);
  Slot& slot = SlotOf(module);
  if (slot.opening == FileFailure::kNone) {
    ReadFile(slot);
  }
  lock.lock();
}

void ModuleReadAhead::OpenFile(size_t module) {
  Slot& slot = SlotOf(module);
  slot.failure = nullptr;
  slot.opening = FileFailure::kOther;
  try {
    if (paths_[module].size() <= mostPathLength_) {
      slot.opening = slot.reader->Open(module);
    }
  } catch (...) {
    slot.failure = std::current_exception();
  }
  SetStage(slot, Stage::kOpen);
}

void ModuleReadAhead::ReadFile(Slot& slot) {
  try {
    slot.reader->Read(stopEvent_);
  } catch (...) {
    slot.failure = std::current_exception();
  }
  SetStage(slot, Stage::kDone);
}

void ModuleReadAhead::SetStage(Slot& slot, Stage stage) {
  {
    const std::lock_guard lock(mutex_);
    slot.stage = stage;
  }
  changed_.notify_all();
}

}  // namespace velkor
