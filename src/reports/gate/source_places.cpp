#include "reports/gate/source_places.h"

#include <algorithm>
#include <fmt/format.h>
#include <utility>

#include "files/whole_text.h"
#include "platform/path_text.h"

namespace velkor::reports {
namespace {

constexpr uint64_t kMostBytes = 4 << 20;

std::string_view FolderOf(std::string_view path) {
  const size_t end = path.rfind('/');
  return path.substr(0, end == path.npos ? 0 : end);
}

bool IsRepository(FileSystem& files, const std::string& folder) {
  return files.Exists(folder + "/.git/HEAD") || files.Exists(folder + "/.git");
}

// With "/" alone between its names, and without "." and "..", as far as they lead back to what was
// named before.
std::string Normal(std::string_view path, const CodePage& codePage) {
  constexpr std::string_view kShare = "\\\\";
  std::string_view lead = path.starts_with(kShare) ? kShare : path.substr(0, path.starts_with('/'));
  std::string normal;
  for (const std::string_view step : PathSteps(path, codePage)) {
    normal.append(std::exchange(lead, "/")).append(step);
  }
  return normal;
}

std::string FirstLine(const std::optional<std::string>& text) {
  return text ? text->substr(0, text->find_first_of("\r\n")) : std::string();
}

bool IsCommit(std::string_view text) {
  return text.size() >= 40 && text.find_first_not_of("0123456789abcdef") == text.npos;
}

// "gitdir: PATH" in a working copy beside others.
std::string GitFolder(FileSystem& files, const CodePage& codePage, const std::string& root) {
  std::string git = root + "/.git";
  const std::string line = FirstLine(ReadWholeText(files, git, kMostBytes));
  constexpr std::string_view kLead = "gitdir: ";
  if (!line.starts_with(kLead)) {
    return git;
  }
  const std::string path = line.substr(kLead.size());
  return IsRootedOnHost(path) ? path : Normal(root + "/" + path, codePage);
}

// "HASH NAME" lines.
std::string PackedCommit(const std::string& packed, const std::string& name) {
  const size_t end = packed.find(" " + name + "\n");
  const size_t start = end == packed.npos ? end : packed.rfind('\n', end);
  return end == packed.npos ? std::string()
                            : packed.substr(start == packed.npos ? 0 : start + 1,
                                            end - (start == packed.npos ? 0 : start + 1));
}

}  // namespace

SourcePlaces::SourcePlaces(FileSystem& files, const CodePage& codePage,
                           std::string_view configuration, const std::vector<std::string>& folders)
    : files_(files), codePage_(codePage) {
  const std::string path = Normal(configuration, codePage);
  const std::string own(FolderOf(path));
  std::string root = own;
  while (!root.empty() && !IsRepository(files_, root)) {
    root = FolderOf(root);
  }
  root_ = root.empty() ? own : root;
  configuration_ = path.substr(std::min(root_.size() + 1, path.size()));
  folders_.push_back(own);
  for (const std::string& folder : folders) {
    folders_.push_back(Normal(folder, codePage));
  }
}

std::optional<std::string> SourcePlaces::Find(std::string_view file) {
  const auto [found, isNew] = found_.try_emplace(std::string(file));
  if (isNew) {
    found->second = Search(file);
  }
  return found->second;
}

std::optional<std::string> SourcePlaces::Search(std::string_view file) {
  const std::string path = Normal(file, codePage_);
  if (path.starts_with('/') || IsRootedOnHost(file)) {
    if (auto found = InRoot(path)) {
      return found;
    }
  } else {
    for (const std::string& folder : folders_) {
      for (std::string_view base = folder; !base.empty() && base.size() >= root_.size();
           base = FolderOf(base)) {
        if (auto found = InRoot(Normal(std::string(base) + "/" + path, codePage_))) {
          return found;
        }
      }
    }
  }
  std::string tail = path;
  for (size_t next = tail.find('/'); next != tail.npos; next = tail.find('/')) {
    tail.erase(0, next + 1);
    for (const std::string& base : {folders_.front(), root_}) {
      if (auto found = InRoot(fmt::format("{}/{}", base, tail))) {
        return found;
      }
    }
  }
  return std::nullopt;
}

std::optional<std::string> SourcePlaces::InRoot(std::string_view path) {
  const bool isBelow =
      path.size() > root_.size() && path.starts_with(root_) && path[root_.size()] == '/';
  return isBelow && files_.Exists(path) && !files_.IsDirectory(path)
             ? std::optional(std::string(path.substr(root_.size() + 1)))
             : std::nullopt;
}

std::string CommitOf(FileSystem& files, const CodePage& codePage, std::string_view root) {
  const std::string folder = GitFolder(files, codePage, std::string(root));
  const std::string head = FirstLine(ReadWholeText(files, folder + "/HEAD", kMostBytes));
  constexpr std::string_view kLead = "ref: ";
  if (!head.starts_with(kLead)) {
    return IsCommit(head) ? head : std::string();
  }
  const std::string name = head.substr(kLead.size());
  // Of a working copy beside others, the references stand with the first one.
  const std::string common = FirstLine(ReadWholeText(files, folder + "/commondir", kMostBytes));
  const std::string shared = common.empty()           ? folder
                             : IsRootedOnHost(common) ? common
                                                      : Normal(folder + "/" + common, codePage);
  for (const std::string& each : {folder, shared}) {
    std::string commit =
        FirstLine(ReadWholeText(files, fmt::format("{}/{}", each, name), kMostBytes));
    if (IsCommit(commit)) {
      return commit;
    }
  }
  const std::string packed = ReadWholeText(files, shared + "/packed-refs", kMostBytes).value_or("");
  const std::string commit = PackedCommit(packed, name);
  return IsCommit(commit) ? commit : std::string();
}

}  // namespace velkor::reports
