#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/folder_listing.h"

namespace velkor {

enum class FileFailure {
  kNone,
  kNotFound,  // no such file: a missing last component or a missing folder on the way
  kOther,     // everything else: a directory, a device, no permission, a sharing violation
};

// A regular file open for reading. Others may read it meanwhile, but not open it for writing.
// Closed by its destructor. Used by one thread at a time.
class InputFile {
 public:
  virtual ~InputFile() = default;
  // Bytes read into buffer, 0 at the end. A read failure, and another program that shortens the
  // file meanwhile, end the data: before Length bytes were read, it was cut short.
  virtual size_t Read(char* buffer, size_t size) = 0;
  // When it was opened.
  virtual uint64_t Length() const = 0;
};

// A file open for writing, exclusively. The destructor closes and reports nothing.
class OutputFile {
 public:
  virtual ~OutputFile() = default;
  // False when not every byte could be written; what was written stays.
  virtual bool Write(std::string_view bytes) = 0;
  // Hands everything to the device; false when that fails.
  virtual bool Synchronize() = 0;
  // False when the file could not be closed without loss. Nothing may be called afterwards.
  virtual bool Close() = 0;
};

template <typename File>
struct OpenResult {
  std::unique_ptr<File> file;  // none exactly when failure is not kNone
  FileFailure failure = FileFailure::kNone;
};

// How a path finds its file. What a project file states was spelt on another machine, where letter
// case meant nothing: see HostPaths. What the user gives here, and all that is written, is meant as
// it is spelt.
enum class Spelling { kExact, kOfProject };

// How a file of the user's choice is to be written.
enum class WayToWrite {
  kDirectly,  // nothing is there, or a device or pipe, or what a link leads to on another device
  kBeside,    // and then put in the place of the file that is there
  kRefused,   // the file that is there is protected, or held by another
};

// The files of the host under path names in text, as the whole system uses them (drive letters,
// backslashes, the run's code page): only the implementation knows the host's own paths. One works
// on the host, another in memory, failing on purpose, for tests. Operations may be called from
// several threads at once. What is not pure is meant for files without links, permissions, locks
// that pass, and devices.
class FileSystem {
 public:
  virtual ~FileSystem() = default;
  virtual OpenResult<InputFile> OpenForRead(std::string_view path,
                                            Spelling spelling = Spelling::kExact) = 0;
  // Asked again and again while a lock of another is waited for: true ends the wait as its time does.
  using GiveUp = std::function<bool()>;
  // The same, but a lock of another is waited for, for a while.
  virtual OpenResult<InputFile> OpenWhenFree(std::string_view path, const GiveUp& /*giveUp*/ = {}) {
    return OpenForRead(path);
  }
  // Creates the file, or empties it once it is held exclusively. The folder must exist.
  virtual OpenResult<OutputFile> OpenForWrite(std::string_view path) = 0;
  virtual bool Exists(std::string_view path, Spelling spelling = Spelling::kExact) = 0;
  virtual bool IsDirectory(std::string_view path, Spelling spelling = Spelling::kExact) = 0;
  // True when both name the same existing file; input may be a path of a project.
  virtual bool IsSameFile(std::string_view path, std::string_view input) = 0;
  virtual WayToWrite HowToWrite(std::string_view path) {
    return Exists(path) && !IsDirectory(path) ? WayToWrite::kBeside : WayToWrite::kDirectly;
  }
  // It is a symbolic link to something outside of the folder that it stands in.
  virtual bool LeadsOutOfFolder(std::string_view /*path*/) { return false; }
  // The owner as far as it may, and the permissions, of another file. False when that fails.
  virtual bool TakePermissions(std::string_view /*path*/, std::string_view /*from*/) {
    return true;
  }
  // Removes what programs that were killed have left beside the path (see temporary_name.h): what
  // is held open for writing stays.
  virtual void RemoveAbandoned(std::string_view /*path*/) {}
  // Asked about the file that is about to be replaced, none when there is none. It is held
  // meanwhile: what is agreed to is what goes. Asked again when another file has taken its place
  // before it was held.
  using MayReplace = std::function<bool(InputFile* old)>;
  // Puts the file `from`, which may still be open for writing, in the place of `to` in one step,
  // and waits until the folder says so after a crash too. A lock of another on `to` is waited for,
  // for a while. False when it stays, when mayReplace says so or the step fails; then both are as
  // before.
  virtual bool Replace(std::string_view from, std::string_view to,
                       const MayReplace& mayReplace = {}, const GiveUp& giveUp = {}) = 0;
  virtual bool Remove(std::string_view path) = 0;
  // When its content was last changed, in nanoseconds of a clock that all files share; none where
  // there is no such file.
  virtual std::optional<int64_t> ModifiedAt(std::string_view path) = 0;
  virtual FolderListing ListFolder(std::string_view path) = 0;
};

}  // namespace velkor
