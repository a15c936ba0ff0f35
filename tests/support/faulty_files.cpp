#include "support/faulty_files.h"

#include <array>
#include <memory>
#include <utility>

namespace velkor::testing {

std::string_view NameOf(FileOperation operation) {
  static constexpr std::array<std::string_view, 14> kNames = {
      "None",        "OpenMissing", "OpenRefused", "Read",  "Length",
      "Create",      "Write",       "Synchronize", "Close", "Exists",
      "IsDirectory", "IsSameFile",  "Replace",     "Remove"};
  return kNames.at(static_cast<size_t>(operation));
}

class FaultyFileSystem::Input : public InputFile {
 public:
  Input(FaultyFileSystem& faults, std::string path, std::unique_ptr<InputFile> file)
      : faults_(faults), path_(std::move(path)), file_(std::move(file)) {}

  size_t Read(char* buffer, size_t size) override {
    const size_t count = file_->Read(buffer, size);
    return faults_.Fails(FileOperation::kRead, path_, count > 0) ? 0 : count;
  }
  uint64_t Length() const override {
    return faults_.Fails(FileOperation::kLength, path_) ? 0 : file_->Length();
  }

 private:
  FaultyFileSystem& faults_;
  const std::string path_;
  const std::unique_ptr<InputFile> file_;
};

class FaultyFileSystem::Output : public OutputFile {
 public:
  Output(FaultyFileSystem& faults, std::string path, std::unique_ptr<OutputFile> file)
      : faults_(faults), path_(std::move(path)), file_(std::move(file)) {}

  bool Write(std::string_view bytes) override {
    if (faults_.Fails(FileOperation::kWrite, path_)) {
      file_->Write(bytes.substr(0, bytes.size() / 2));
      return false;
    }
    return file_->Write(bytes);
  }
  bool Synchronize() override {
    return !faults_.Fails(FileOperation::kSynchronize, path_) && file_->Synchronize();
  }
  bool Close() override {
    const bool closed = file_->Close();
    return !faults_.Fails(FileOperation::kClose, path_) && closed;
  }

 private:
  FaultyFileSystem& faults_;
  const std::string path_;
  const std::unique_ptr<OutputFile> file_;
};

void FaultyFileSystem::FailAt(FileOperation operation, int call) {
  const std::lock_guard lock(mutex_);
  operation_ = operation;
  callsLeft_ = call;
  hit_ = false;
  felt_ = false;
  hitPath_.clear();
}

void FaultyFileSystem::BeforeReplace(std::function<void()> action) {
  const std::lock_guard lock(mutex_);
  beforeReplace_ = std::move(action);
}

bool FaultyFileSystem::Hit() const {
  const std::lock_guard lock(mutex_);
  return hit_;
}

bool FaultyFileSystem::Felt() const {
  const std::lock_guard lock(mutex_);
  return felt_;
}

std::string FaultyFileSystem::HitPath() const {
  const std::lock_guard lock(mutex_);
  return hitPath_;
}

bool FaultyFileSystem::Fails(FileOperation operation, std::string_view path, bool felt) {
  const std::lock_guard lock(mutex_);
  if (operation != operation_ || callsLeft_ == 0 || --callsLeft_ > 0) {
    return false;
  }
  hit_ = true;
  felt_ = felt;
  hitPath_ = path;
  return true;
}

OpenResult<InputFile> FaultyFileSystem::OpenForRead(std::string_view path) {
  const bool there = files_.Exists(path);
  if (Fails(FileOperation::kOpenMissing, path, there)) {
    return {nullptr, FileFailure::kNotFound};
  }
  if (Fails(FileOperation::kOpenRefused, path)) {
    return {nullptr, FileFailure::kOther};
  }
  OpenResult<InputFile> opened = files_.OpenForRead(path);
  if (opened.file) {
    opened.file = std::make_unique<Input>(*this, std::string(path), std::move(opened.file));
  }
  return opened;
}

OpenResult<OutputFile> FaultyFileSystem::OpenForWrite(std::string_view path) {
  if (Fails(FileOperation::kCreate, path)) {
    return {nullptr, FileFailure::kOther};
  }
  OpenResult<OutputFile> opened = files_.OpenForWrite(path);
  if (opened.file) {
    opened.file = std::make_unique<Output>(*this, std::string(path), std::move(opened.file));
  }
  return opened;
}

bool FaultyFileSystem::Exists(std::string_view path) {
  const bool exists = files_.Exists(path);
  return !Fails(FileOperation::kExists, path, exists) && exists;
}

bool FaultyFileSystem::IsDirectory(std::string_view path) {
  const bool isDirectory = files_.IsDirectory(path);
  return !Fails(FileOperation::kIsDirectory, path, isDirectory) && isDirectory;
}

bool FaultyFileSystem::IsSameFile(std::string_view left, std::string_view right) {
  const bool same = files_.IsSameFile(left, right);
  return !Fails(FileOperation::kIsSameFile, left, same) && same;
}

bool FaultyFileSystem::Replace(std::string_view from, std::string_view to,
                               const MayReplace& mayReplace) {
  std::function<void()> action;
  {
    const std::lock_guard lock(mutex_);
    action = beforeReplace_;
  }
  if (action) {
    action();
  }
  return !Fails(FileOperation::kReplace, to) && files_.Replace(from, to, mayReplace);
}

bool FaultyFileSystem::Remove(std::string_view path) {
  return !Fails(FileOperation::kRemove, path) && files_.Remove(path);
}

FolderListing FaultyFileSystem::ListFolder(std::string_view path) {
  return files_.ListFolder(path);
}

}  // namespace velkor::testing
