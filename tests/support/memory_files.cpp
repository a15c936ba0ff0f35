#include "support/memory_files.h"

#include <algorithm>
#include <cstring>
#include <thread>

namespace velkor::testing {

class MemoryFileSystem::Input : public InputFile {
 public:
  // Under the mutex.
  Input(MemoryFileSystem& files, std::string path)
      : files_(files), path_(std::move(path)), length_(files.entries_[path_].bytes->size()) {}

  ~Input() override {
    const std::lock_guard lock(files_.mutex_);
    --files_.entries_[path_].readers;
  }

  size_t Read(char* buffer, size_t size) override {
    std::function<void()> action;
    {
      const std::lock_guard lock(files_.mutex_);
      action = files_.entries_[path_].onRead;
    }
    if (action) {
      action();
    }
    const std::lock_guard lock(files_.mutex_);
    const std::string& bytes = *files_.entries_[path_].bytes;
    const size_t left = bytes.size() - std::min(position_, bytes.size());
    const size_t count = std::min({size, left, files_.readLimit_});
    std::memcpy(buffer, bytes.data() + position_, count);
    position_ += count;
    return files_.Fails(FileOperation::kRead, path_) ? 0 : count;
  }

  uint64_t Length() const override {
    const std::lock_guard lock(files_.mutex_);
    return files_.Fails(FileOperation::kLength, path_) ? 0 : length_;
  }

 private:
  MemoryFileSystem& files_;
  const std::string path_;
  const uint64_t length_;
  size_t position_ = 0;
};

class MemoryFileSystem::Output : public OutputFile {
 public:
  Output(MemoryFileSystem& files, std::string path) : files_(files), path_(std::move(path)) {}

  ~Output() override {
    const std::lock_guard lock(files_.mutex_);
    const auto entry = files_.entries_.find(path_);
    if (entry != files_.entries_.end()) {
      entry->second.written = false;
    }
  }

  bool Write(std::string_view bytes) override {
    const std::lock_guard lock(files_.mutex_);
    const bool fails = files_.Fails(FileOperation::kWrite, path_);
    const size_t room = files_.capacity_.value_or(SIZE_MAX);
    const size_t taken = std::min(fails ? bytes.size() / 2 : bytes.size(), room);
    files_.entries_[path_].bytes->append(bytes.substr(0, taken));
    if (files_.capacity_) {
      *files_.capacity_ -= taken;
    }
    return taken == bytes.size() && !fails;
  }

  bool Synchronize() override { return !Fails(FileOperation::kSynchronize); }
  bool Close() override { return !Fails(FileOperation::kClose); }

 private:
  bool Fails(FileOperation operation) {
    const std::lock_guard lock(files_.mutex_);
    return files_.Fails(operation, path_);
  }

  MemoryFileSystem& files_;
  const std::string path_;
};

void MemoryFileSystem::Put(const std::string& path, std::string bytes) {
  const std::lock_guard lock(mutex_);
  *entries_[path].bytes = std::move(bytes);
}

std::optional<std::string> MemoryFileSystem::Get(const std::string& path) const {
  const std::lock_guard lock(mutex_);
  const auto entry = entries_.find(path);
  if (entry == entries_.end()) {
    return std::nullopt;
  }
  return *entry->second.bytes;
}

void MemoryFileSystem::AddDirectory(const std::string& path) {
  const std::lock_guard lock(mutex_);
  directories_.insert(path);
}

void MemoryFileSystem::Refuse(const std::string& path) {
  const std::lock_guard lock(mutex_);
  refused_.insert(path);
}

void MemoryFileSystem::Hold(const std::string& path) {
  const std::lock_guard lock(mutex_);
  held_.insert(path);
}

void MemoryFileSystem::Release(const std::string& path) {
  const std::lock_guard lock(mutex_);
  held_.erase(path);
}

void MemoryFileSystem::SetCapacity(std::optional<size_t> bytes) {
  const std::lock_guard lock(mutex_);
  capacity_ = bytes;
}

void MemoryFileSystem::SetReadLimit(size_t bytes) {
  const std::lock_guard lock(mutex_);
  readLimit_ = bytes;
}

void MemoryFileSystem::OnRead(const std::string& path, std::function<void()> action) {
  const std::lock_guard lock(mutex_);
  entries_[path].onRead = std::move(action);
}

void MemoryFileSystem::BeforeReplace(std::function<void()> action) {
  const std::lock_guard lock(mutex_);
  beforeReplace_ = std::move(action);
}

void MemoryFileSystem::FailAt(FileOperation operation, int call) {
  const std::lock_guard lock(mutex_);
  fault_ = {.operation = operation, .callsLeft = call, .path = ""};
}

MemoryFileSystem::Fault MemoryFileSystem::GetFault() const {
  const std::lock_guard lock(mutex_);
  return fault_;
}

bool MemoryFileSystem::Fails(FileOperation operation, std::string_view path) {
  if (operation != fault_.operation || fault_.callsLeft == 0 || --fault_.callsLeft > 0) {
    return false;
  }
  fault_.hit = true;
  fault_.path = path;
  return true;
}

bool MemoryFileSystem::IsThere(std::string_view path) const {
  return entries_.contains(path) || directories_.contains(path);
}

bool MemoryFileSystem::HasFilesBelow(std::string_view folder) const {
  const std::string start = std::string(folder) + '/';
  const auto first = entries_.lower_bound(start);
  return first != entries_.end() && first->first.starts_with(start);
}

bool MemoryFileSystem::IsClosedTo(std::string_view path) const {
  return refused_.contains(path) || directories_.contains(path) || held_.contains(path);
}

void MemoryFileSystem::WaitWhileHeld(std::string_view path, const GiveUp& giveUp) const {
  std::unique_lock lock(mutex_);
  while (held_.contains(path) && giveUp) {
    lock.unlock();
    if (giveUp()) {
      return;
    }
    std::this_thread::yield();
    lock.lock();
  }
}

std::vector<std::string> MemoryFileSystem::Paths() const {
  const std::lock_guard lock(mutex_);
  std::vector<std::string> paths;
  for (const auto& [path, entry] : entries_) {
    paths.push_back(path);
  }
  return paths;
}

int MemoryFileSystem::OpenFiles() const {
  const std::lock_guard lock(mutex_);
  int count = 0;
  for (const auto& [path, entry] : entries_) {
    count += entry.readers + (entry.written ? 1 : 0);
  }
  return count;
}

OpenResult<InputFile> MemoryFileSystem::OpenForRead(std::string_view path, Spelling /*spelling*/) {
  const std::lock_guard lock(mutex_);
  if (Fails(FileOperation::kOpenMissing, path)) {
    return {nullptr, FileFailure::kNotFound};
  }
  if (Fails(FileOperation::kOpenRefused, path) || IsClosedTo(path)) {
    return {nullptr, FileFailure::kOther};
  }
  const auto entry = entries_.find(path);
  if (entry == entries_.end()) {
    return {nullptr, FileFailure::kNotFound};
  }
  if (entry->second.written) {
    return {nullptr, FileFailure::kOther};
  }
  ++entry->second.readers;
  return {std::make_unique<Input>(*this, std::string(path)), FileFailure::kNone};
}

OpenResult<InputFile> MemoryFileSystem::OpenWhenFree(std::string_view path, const GiveUp& giveUp) {
  WaitWhileHeld(path, giveUp);
  return OpenForRead(path);
}

OpenResult<OutputFile> MemoryFileSystem::OpenForWrite(std::string_view path) {
  const std::lock_guard lock(mutex_);
  if (Fails(FileOperation::kCreate, path) || IsClosedTo(path)) {
    return {nullptr, FileFailure::kOther};
  }
  Entry& entry = entries_[std::string(path)];
  if (entry.written || entry.readers > 0) {
    return {nullptr, FileFailure::kOther};
  }
  entry.written = true;
  entry.bytes->clear();
  return {std::make_unique<Output>(*this, std::string(path)), FileFailure::kNone};
}

bool MemoryFileSystem::Exists(std::string_view path, Spelling /*spelling*/) {
  const std::lock_guard lock(mutex_);
  return !Fails(FileOperation::kExists, path) && IsThere(path);
}

bool MemoryFileSystem::IsDirectory(std::string_view path, Spelling /*spelling*/) {
  const std::lock_guard lock(mutex_);
  return !Fails(FileOperation::kIsDirectory, path) &&
         (directories_.contains(path) || HasFilesBelow(path));
}

bool MemoryFileSystem::IsSameFile(std::string_view path, std::string_view input) {
  const std::lock_guard lock(mutex_);
  return !Fails(FileOperation::kIsSameFile, path) && path == input && IsThere(path);
}

bool MemoryFileSystem::Replace(std::string_view from, std::string_view to,
                               const MayReplace& mayReplace, const GiveUp& giveUp) {
  std::unique_lock lock(mutex_);
  const std::function<void()> action = beforeReplace_;
  lock.unlock();
  if (action) {
    action();
  }
  WaitWhileHeld(to, giveUp);
  lock.lock();
  if (Fails(FileOperation::kReplace, to) || !entries_.contains(from) || IsClosedTo(to)) {
    return false;
  }
  const bool wasThere = entries_.contains(to);
  Entry& target = entries_[std::string(to)];
  if (target.written || target.readers > 0) {
    return false;
  }
  target.written = true;
  ++target.readers;
  std::optional<Input> old(std::in_place, *this, std::string(to));
  lock.unlock();
  const bool agreed = !mayReplace || mayReplace(wasThere ? &*old : nullptr);
  old.reset();
  lock.lock();
  target.written = false;
  if (agreed) {
    target.bytes = entries_.find(from)->second.bytes;
    entries_.erase(entries_.find(from));
  } else if (!wasThere) {
    entries_.erase(std::string(to));
  }
  return agreed;
}

bool MemoryFileSystem::Remove(std::string_view path) {
  const std::lock_guard lock(mutex_);
  const auto entry = entries_.find(path);
  if (Fails(FileOperation::kRemove, path) || entry == entries_.end()) {
    return false;
  }
  entries_.erase(entry);
  return true;
}

std::optional<int64_t> MemoryFileSystem::ModifiedAt(std::string_view path) {
  const std::lock_guard lock(mutex_);
  if (entries_.find(path) == entries_.end()) {
    return std::nullopt;
  }
  const auto time = times_.find(path);
  return time == times_.end() ? 0 : time->second;
}

void MemoryFileSystem::SetModifiedAt(const std::string& path, int64_t time) {
  const std::lock_guard lock(mutex_);
  times_[path] = time;
}

FolderListing MemoryFileSystem::ListFolder(std::string_view path) {
  const std::lock_guard lock(mutex_);
  const std::string start = std::string(path) + "/";
  std::map<std::string, FolderEntry::Kind> found;
  for (const auto& [file, entry] : entries_) {
    if (file.starts_with(start)) {
      const size_t end = file.find('/', start.size());
      found[file.substr(start.size(), end - start.size())] =
          end == std::string::npos ? FolderEntry::Kind::kFile : FolderEntry::Kind::kFolder;
    }
  }
  for (const std::string& folder : directories_) {
    if (folder.starts_with(start)) {
      found[folder.substr(start.size(), folder.find('/', start.size()) - start.size())] =
          FolderEntry::Kind::kFolder;
    }
  }
  FolderListing listing;
  const auto number = folderNumbers_.emplace(path, folderNumbers_.size() + 1).first;
  listing.identity = {0, number->second};
  listing.isWhole = !refused_.contains(path) && (!found.empty() || directories_.contains(path));
  for (const auto& [name, kind] : found) {
    listing.entries.push_back({name, kind, false});
  }
  return listing;
}

}  // namespace velkor::testing
