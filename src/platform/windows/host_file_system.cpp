#include "platform/host_file_system.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <windows.h>

#include "platform/host_folder.h"
#include "platform/patience.h"
#include "platform/standard_streams.h"
#include "platform/temporary_name.h"
#include "platform/windows/host_handle.h"
#include "platform/windows/host_links.h"
#include "platform/windows/host_permissions.h"
#include "platform/windows/replacing_turn.h"
#include "platform/windows/wide_path.h"

namespace velkor {
namespace {

// One call takes no more.
DWORD Portion(size_t size) {
  return static_cast<DWORD>(std::min<size_t>(size, std::numeric_limits<DWORD>::max()));
}

class HostInputFile : public InputFile {
 public:
  explicit HostInputFile(HostHandle file) : file_(std::move(file)) {
    const std::optional<HostFacts> facts = FactsOf(file_.Get());
    length_ = facts ? facts->size : 0;
  }

  size_t Read(char* buffer, size_t size) override {
    DWORD count = 0;
    return ReadFile(file_.Get(), buffer, Portion(size), &count, nullptr) != 0 ? count : 0;
  }

  uint64_t Length() const override { return length_; }

 private:
  HostHandle file_;
  uint64_t length_;
};

class HostOutputFile : public OutputFile {
 public:
  explicit HostOutputFile(HostHandle file) : file_(std::move(file)) {}

  bool Write(std::string_view bytes) override {
    while (!bytes.empty()) {
      DWORD count = 0;
      if (WriteFile(file_.Get(), bytes.data(), Portion(bytes.size()), &count, nullptr) == 0 ||
          count == 0) {
        return false;
      }
      bytes.remove_prefix(count);
    }
    return true;
  }

  // A device has nothing to hand on, and says so.
  bool Synchronize() override {
    return FlushFileBuffers(file_.Get()) != 0 || !file_.IsRegularFile();
  }

  bool Close() override { return file_.Close(); }

 private:
  HostHandle file_;
};

// A reader admits readers.
HostHandle OpenToRead(const std::wstring& path) {
  return {path, GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN};
}

// As one that may change it, and admits nobody.
HostHandle Hold(const std::wstring& path) {
  return {path, GENERIC_READ | GENERIC_WRITE, 0, OPEN_EXISTING};
}

// What is protected, hidden or otherwise told apart stays so.
bool TakeOver(const std::wstring& path, const std::wstring& from) {
  constexpr DWORD kKept = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_READONLY |
                          FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
  const DWORD attributes = GetFileAttributesW(from.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || !CopyPermissions(from, path)) {
    return false;
  }
  const DWORD kept = attributes & kKept;
  return kept == 0 || SetFileAttributesW(path.c_str(), kept) != 0;
}

enum class Replacing {
  kDone,
  kFailed,
  kHeld,  // by another, who may have put a file there or taken it away: to be tried again
};

Replacing Move(const std::wstring& from, const std::wstring& to, DWORD flags) {
  if (MoveFileExW(from.c_str(), to.c_str(), flags | MOVEFILE_WRITE_THROUGH) != 0) {
    return Replacing::kDone;
  }
  const DWORD failure = GetLastError();
  const bool mayPass = failure == ERROR_SHARING_VIOLATION || failure == ERROR_ACCESS_DENIED ||
                       failure == ERROR_ALREADY_EXISTS || failure == ERROR_FILE_EXISTS;
  return mayPass ? Replacing::kHeld : Replacing::kFailed;
}

Replacing TryReplace(const std::wstring& from, const std::wstring& to,
                     const FileSystem::MayReplace& mayReplace) {
  HostHandle old = Hold(to);
  if (!old.IsOpen()) {
    if (old.Failure() == FileFailure::kNotFound) {
      return !mayReplace || mayReplace(nullptr) ? Move(from, to, 0) : Replacing::kFailed;
    }
    return old.IsHeldByAnother() ? Replacing::kHeld : Replacing::kFailed;
  }
  if (!old.IsRegularFile()) {
    return Replacing::kFailed;
  }
  auto held = std::make_unique<HostInputFile>(std::move(old));
  if ((mayReplace && !mayReplace(held.get())) || !TakeOver(from, to)) {
    return Replacing::kFailed;
  }
  held.reset();
  return Move(from, to, MOVEFILE_REPLACE_EXISTING);
}

// Of final paths; they are spelt in one way.
bool IsBelow(const std::wstring& path, std::wstring folder) {
  if (!folder.ends_with(L'\\')) {
    folder += L'\\';
  }
  return path.starts_with(folder);
}

// Goes with its handle.
void RemoveUnlessHeld(const std::wstring& path) {
  const HostHandle file(path, GENERIC_WRITE | DELETE, 0, OPEN_EXISTING, FILE_FLAG_DELETE_ON_CLOSE);
}

}  // namespace

OpenResult<InputFile> HostFileSystem::OpenForRead(std::string_view path, Spelling spelling) {
  if (path == kStandardInput) {
    std::unique_ptr<InputFile> input = OpenStandardInput();
    const FileFailure failure = input != nullptr ? FileFailure::kNone : FileFailure::kOther;
    return {std::move(input), failure};
  }
  HostHandle file = OpenToRead(WidePath(paths_.ToHost(path, spelling)));
  if (!file.IsRegularFile()) {
    return {nullptr, file.IsOpen() ? FileFailure::kOther : file.Failure()};
  }
  return {std::make_unique<HostInputFile>(std::move(file)), FileFailure::kNone};
}

OpenResult<InputFile> HostFileSystem::OpenWhenFree(std::string_view path, const GiveUp& giveUp) {
  const Patience patience(patience_, giveUp);
  for (;;) {
    const std::wstring widePath = WidePath(paths_.ToHost(path, Spelling::kExact));
    HostHandle file = OpenToRead(widePath);
    if (file.IsRegularFile()) {
      return {std::make_unique<HostInputFile>(std::move(file)), FileFailure::kNone};
    }
    if (!file.IsHeldByAnother() || patience.IsOver()) {
      return {nullptr, file.IsOpen() ? FileFailure::kOther : file.Failure()};
    }
    std::this_thread::sleep_for(Patience::kPause);
  }
}

OpenResult<OutputFile> HostFileSystem::OpenForWrite(std::string_view path) {
  if (path == kStandardOutput) {
    return {OpenStandardOutput(), FileFailure::kNone};
  }
  // It may be put in the place of another while it is open.
  HostHandle file(WidePath(paths_.ToHost(path, Spelling::kExact)), GENERIC_WRITE, FILE_SHARE_DELETE,
                  OPEN_ALWAYS);
  if (!file.IsOpen()) {
    return {nullptr, file.Failure()};
  }
  if (file.IsRegularFile() && SetEndOfFile(file.Get()) == 0) {
    return {nullptr, FileFailure::kOther};
  }
  return {std::make_unique<HostOutputFile>(std::move(file)), FileFailure::kNone};
}

bool HostFileSystem::Exists(std::string_view path, Spelling spelling) {
  return FactsOf(WidePath(paths_.ToHost(path, spelling))).has_value();
}

bool HostFileSystem::IsDirectory(std::string_view path, Spelling spelling) {
  const std::optional<HostFacts> facts = FactsOf(WidePath(paths_.ToHost(path, spelling)));
  return facts && facts->IsFolder();
}

bool HostFileSystem::IsSameFile(std::string_view path, std::string_view input) {
  const auto first = FactsOf(WidePath(paths_.ToHost(path, Spelling::kExact)));
  const auto second = FactsOf(WidePath(paths_.ToHost(input, Spelling::kOfProject)));
  return first && second && first->identity == second->identity;
}

bool HostFileSystem::Replace(std::string_view from, std::string_view to,
                             const MayReplace& mayReplace, const GiveUp& giveUp) {
  const std::wstring source = WidePath(paths_.ToHost(from, Spelling::kExact));
  const std::wstring target = FollowLinks(WidePath(paths_.ToHost(to, Spelling::kExact)));
  const std::optional<HostFacts> facts = FactsOf(source);
  if (!facts || facts->IsFolder()) {
    return false;
  }
  const Patience patience(patience_, giveUp);
  const ReplacingTurn turn(target, patience);
  if (!turn.IsTaken()) {
    return false;
  }
  Replacing result = TryReplace(source, target, mayReplace);
  while (result == Replacing::kHeld && !patience.IsOver()) {
    std::this_thread::sleep_for(Patience::kPause);
    result = TryReplace(source, target, mayReplace);
  }
  return result == Replacing::kDone;
}

WayToWrite HostFileSystem::HowToWrite(std::string_view path) {
  if (path == kStandardOutput) {
    return WayToWrite::kDirectly;
  }
  const HostPath hostPath = paths_.ToHost(path, Spelling::kExact);
  const std::wstring widePath = WidePath(hostPath);
  const std::optional<HostFacts> facts = FactsOf(widePath);
  const std::optional<HostFacts> folder = FactsOf(WidePath(hostPath.Folder()));
  if (!facts || !folder || facts->IsFolder() || facts->identity.first != folder->identity.first) {
    return WayToWrite::kDirectly;
  }
  return Hold(widePath).IsRegularFile() ? WayToWrite::kBeside : WayToWrite::kRefused;
}

bool HostFileSystem::LeadsOutOfFolder(std::string_view path) {
  const HostPath hostPath = paths_.ToHost(path, Spelling::kExact);
  const std::wstring widePath = WidePath(hostPath);
  if (!IsLink(widePath)) {
    return false;
  }
  const std::optional<std::wstring> folder = FinalPath(WidePath(hostPath.Folder()));
  const std::optional<std::wstring> target = FinalPath(widePath);
  return !folder || !target || !IsBelow(*target, *folder);
}

bool HostFileSystem::TakePermissions(std::string_view path, std::string_view from) {
  return TakeOver(WidePath(paths_.ToHost(path, Spelling::kExact)),
                  WidePath(paths_.ToHost(from, Spelling::kExact)));
}

void HostFileSystem::RemoveAbandoned(std::string_view path) {
  const HostPath hostPath = paths_.ToHost(path, Spelling::kExact);
  const HostPath folder = hostPath.Folder();
  const std::string name = hostPath.Bytes().substr(hostPath.Bytes().find_last_of("/\\:") + 1);
  for (const FolderEntry& entry : ListHostFolder(folder).entries) {
    if (entry.kind == FolderEntry::Kind::kFile && !entry.isLink &&
        IsTemporaryOf(entry.name, name)) {
      RemoveUnlessHeld(WidePath(folder.Below(entry.name)));
    }
  }
}

bool HostFileSystem::Remove(std::string_view path) {
  return DeleteFileW(WidePath(paths_.ToHost(path, Spelling::kExact)).c_str()) != 0;
}

std::optional<int64_t> HostFileSystem::ModifiedAt(std::string_view path) {
  const std::optional<HostFacts> facts = FactsOf(WidePath(paths_.ToHost(path, Spelling::kExact)));
  return facts ? std::optional(facts->modifiedAt) : std::nullopt;
}

FolderListing HostFileSystem::ListFolder(std::string_view path) {
  const HostPath folder = paths_.ToHost(path, Spelling::kExact);
  return ListHostFolder(folder.Bytes().empty() ? HostPath(".") : folder);
}

}  // namespace velkor
