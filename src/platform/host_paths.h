#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/code_page.h"
#include "platform/file_system.h"
#include "platform/host_names.h"
#include "platform/host_path.h"
#include "platform/name_lookup.h"
#include "platform/path_text.h"

namespace velkor {

// What the system asks about path names, without touching a file. They are texts of the run's code
// page throughout, those of this host too.
class PathHost {
 public:
  virtual ~PathHost() = default;
  // Resolves "." and ".." steps, doubled separators and a missing drive or folder. A path that
  // begins with "/" keeps "/" throughout (its backslashes become "/"); one with a drive letter
  // or "\" gets "\" throughout; a relative path is resolved against the current folder.
  // None when the result would need 300 bytes or more.
  virtual std::optional<std::string> FullPathName(std::string_view path) const = 0;
  // The full path name of what the user gives here: bytes of the host's encoding, as they are
  // typed. A path with a drive letter, or one that does not begin with "/" and holds a "\", is
  // meant as projects state paths; every other is a host path, in which "\" is no separator. Where
  // the host has drives, one without is on the current one. The path itself, as a text, when there
  // is no full path name.
  virtual std::string GivenPath(std::string_view typed) const = 0;
  // The name by which other programs of this host find the file that a project states: bytes as
  // the operating system takes them.
  virtual std::string HostName(std::string_view path) const = 0;
  // Of the running program, symbolic links resolved.
  virtual std::string ExecutablePath() const = 0;
  // Paths follow the project that is being loaded: the directory that its file states, and the
  // file's own path. Only while no file is in use.
  virtual void SetProject(std::string_view projectDirectory, std::string_view projectPath) = 0;
};

// Turns path names in text into those of this host:
// - a path that begins with "/" is that of the same name on the host;
// - a mapping replaces a prefix ending at a component border, ignoring letter case and the kind
//   of separator; of several that fit, the longest, and of equal ones the last;
// - a path on the drive of the project directory that no mapping covers is taken relative to the
//   project directory, which stands for the folder of the project file (also for paths above it:
//   a step ".." for each component that the two do not share); one without a drive likewise;
// - any other path with a drive letter or "\" lies below the current folder;
// - of a path that a project states, a component that does not exist as spelt is looked up ignoring
//   letter case, and in the bytes of the project; when there are several, none is taken. What a
//   folder holds is asked once from one SetProject to the next.
// On a host with drives a path that names one is its own place there: the folder of the project file
// counts only where neither the project directory nor the folder of the path exists.
// May be used from several threads; SetProject only while no file is in use.
class HostPaths : public PathHost {
 public:
  explicit HostPaths(const CodePage& codePage, const CodePage& hostEncoding = CodePage::Utf8())
      : codePage_(codePage), names_(codePage, hostEncoding) {}

  // "C:\work=/home/me/work", as typed. False for a text without "=", or with an empty side.
  bool AddMapping(std::string_view mapping);
  // Several of them, separated by ";" (the form of VELKOR_MAP). Stops at the first wrong one.
  bool AddMappings(std::string_view mappings);
  void SetProject(std::string_view projectDirectory, std::string_view projectPath) override;

  // Where the file of that name is, or would be created, on the host.
  HostPath ToHost(std::string_view path, Spelling spelling) const;
  // What was typed here, as a text.
  std::string Typed(std::string_view bytes) const { return names_.Typed(bytes); }

  std::optional<std::string> FullPathName(std::string_view path) const override;
  std::string GivenPath(std::string_view typed) const override;
  std::string HostName(std::string_view path) const override {
    return ToHost(path, Spelling::kOfProject).Bytes();
  }
  std::string ExecutablePath() const override;

 private:
  struct Mapping {
    PathText prefix;
    HostPath target;
  };
  struct Project {
    PathText directory;  // as stated, resolved; only when it is of another machine
    HostPath folder;     // on the host
  };

  // Where the components below a folder of the host stand for the path.
  struct Place {
    HostPath folder;
    std::vector<std::string> components;
  };

  Place Locate(PathText path, const std::optional<Project>& project) const;
  Place Unmapped(PathText path) const;
  HostPath Join(const Place& place) const {
    return JoinBelow(place.folder, place.components, names_);
  }
  bool IsFolderThere(const PathText& path) const;
  const Mapping* FindMapping(const PathText& path) const;

  const CodePage& codePage_;
  const HostNames names_;
  std::vector<Mapping> mappings_;
  mutable FolderNames folders_;
  mutable std::mutex mutex_;
  std::optional<Project> project_;
};

}  // namespace velkor
