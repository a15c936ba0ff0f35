#include "document/module_read_ahead.h"

#include <algorithm>
#include <system_error>

#include "files/paths.h"
#include "readers/tarn/module_reader.h"

namespace velkor {

namespace {

constexpr size_t kModulesPerThread = 2;

size_t ThreadCount(const Host& host) {
  return host.readingThreads == 0 ? WorkerThread::MostAtOnce() : host.readingThreads;
}

}  // namespace

ModuleReadAhead::ModuleReadAhead(const StkStringList& paths, Host& host, Event& stopEvent)
    : paths_(paths),
      host_(host),
      stopEvent_(stopEvent),
      slots_(ThreadCount(host) * kModulesPerThread) {
  StartThreads(std::min(ThreadCount(host), paths.size()));
}

ModuleReadAhead::~ModuleReadAhead() {
  {
    const std::lock_guard lock(mutex_);
    ended_ = true;
  }
  changed_.notify_all();
  threads_.clear();
}

// The owner's thread is one of them. None runs before all are there: one that runs is not joined
// when the constructor fails.
void ModuleReadAhead::StartThreads(size_t count) {
  try {
    while (threads_.size() + 1 < count) {
      threads_.push_back(std::make_unique<WorkerThread>([this] { Work(); }));
    }
  } catch (const std::system_error&) {
    // Fewer threads read the same.
  }
  for (const auto& thread : threads_) {
    thread->Resume();
  }
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

const ModuleRecording& ModuleReadAhead::Read() {
  Slot& slot = SlotOf(current_);
  if (ownerReads_) {
    ReadFile(slot);
  } else {
    WaitFor(Stage::kDone);
  }
  if (slot.failure) {
    std::rethrow_exception(slot.failure);
  }
  return slot.recording;
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
    if (paths_[module].size() <= kMaxPathLength) {
      OpenResult<InputFile> opened = host_.files.OpenForRead(paths_[module]);
      if (opened.file) {
        slot.file.emplace(std::move(opened.file));
      }
      slot.opening = opened.failure;
    }
  } catch (...) {
    slot.failure = std::current_exception();
  }
  SetStage(slot, Stage::kOpen);
}

void ModuleReadAhead::ReadFile(Slot& slot) {
  try {
    slot.recording.Clear();
    StkAsmModuleReader(*slot.file, stopEvent_, host_.codePage, slot.recording).Read();
  } catch (...) {
    slot.failure = std::current_exception();
  }
  slot.file.reset();
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
