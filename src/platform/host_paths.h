#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/code_page.h"
#include "platform/path_text.h"

namespace velkor {

// What the system asks about path names, without touching a file.
class PathHost {
 public:
  virtual ~PathHost() = default;
  // Resolves "." and ".." steps, doubled separators and a missing drive or folder. A path that
  // begins with "/" keeps "/" throughout (its backslashes become "/"); one with a drive letter
  // or "\" gets "\" throughout; a relative path is resolved against the current folder.
  // None when the result would need 300 bytes or more.
  virtual std::optional<std::string> FullPathName(std::string_view path) const = 0;
  // Of the running program, symbolic links resolved.
  virtual std::string ExecutablePath() const = 0;
  // Paths follow the project that is being loaded: the directory that its file states, and the
  // file's own path. Only while no file is in use.
  virtual void SetProject(std::string_view projectDirectory, std::string_view projectPath) = 0;
};

// Turns the path names of a project into those of this host:
// - a path that begins with "/" is a host path;
// - a mapping replaces a prefix ending at a component border, ignoring letter case and the kind
//   of separator; of several that fit, the longest, and of equal ones the last;
// - a path on the drive of the project directory that no mapping covers is taken relative to the
//   project directory, which stands for the folder of the project file (also for paths above it:
//   a step ".." for each component that the two do not share);
// - any other path with a drive letter or "\" lies below the current folder;
// - a component that does not exist as spelt is looked up ignoring letter case (of several, the
//   first in byte order), also under the name's UTF-8 form where the code page is another.
// May be used from several threads; SetProject only while no file is in use.
class HostPaths : public PathHost {
 public:
  explicit HostPaths(const CodePage& codePage) : codePage_(codePage) {}

  // "C:\work=/home/me/work". False for a text without "=", or with an empty side.
  bool AddMapping(std::string_view mapping);
  // Several of them, separated by ";" (the form of VELKOR_MAP). Stops at the first wrong one.
  bool AddMappings(std::string_view mappings);
  void SetProject(std::string_view projectDirectory, std::string_view projectPath) override;

  // Where the file of that name is, or would be created, on the host.
  std::string ToHost(std::string_view path) const;

  std::optional<std::string> FullPathName(std::string_view path) const override;
  std::string ExecutablePath() const override;

 private:
  struct Mapping {
    PathText prefix;
    std::string target;
  };
  struct Project {
    PathText directory;  // as stated, resolved; only when it has a drive or names a share
    std::string folder;  // on the host
  };

  std::string ToHost(std::string_view path, const std::optional<Project>& project) const;
  const Mapping* FindMapping(const PathText& path) const;

  const CodePage& codePage_;
  std::vector<Mapping> mappings_;
  mutable std::mutex mutex_;
  std::optional<Project> project_;
};

}  // namespace velkor
