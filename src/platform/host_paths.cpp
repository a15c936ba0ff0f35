#include "platform/host_paths.h"

#include <algorithm>
#include <utility>

#include "platform/host_folder.h"
#include "platform/host_program.h"

namespace velkor {
namespace {

constexpr size_t kPathBuffer = 300;

std::vector<std::string> Rest(const PathText& path, size_t from) {
  return {path.components.begin() + static_cast<std::ptrdiff_t>(from), path.components.end()};
}

// Where the path lies when the project's folder is where the project's directory was, or none when
// it is on another drive.
std::optional<std::vector<std::string>> StepsFromProject(const PathText& path,
                                                         const PathText& directory,
                                                         const CodePage& codePage) {
  const bool noDrive = path.root == "\\" && directory.HasDrive();
  if (!noDrive && !codePage.EqualIgnoreCase(path.root, directory.root)) {
    return std::nullopt;
  }
  const size_t shared = CountShared(path, directory, codePage);
  if (shared < directory.fixed) {
    return std::nullopt;
  }
  std::vector<std::string> steps(directory.components.size() - shared, "..");
  const std::vector<std::string> rest = Rest(path, shared);
  steps.insert(steps.end(), rest.begin(), rest.end());
  return steps;
}

bool IsOfThisHost(std::string_view typed) {
  return typed.starts_with('/') || (!BeginsWithDrive(typed) && typed.find('\\') == typed.npos);
}

bool IsSeparator(char character) {
  return character == '/' || character == '\\';
}

// A path that begins with a separator, where there are drives: two of them lead to a share, one to
// the drive of the current folder.
std::string WithDrive(std::string path, const std::string& currentFolder) {
  if (path.empty() || !IsSeparator(path[0])) {
    return path;
  }
  if (path.size() > 1 && IsSeparator(path[1])) {
    return path.replace(0, 2, "\\\\");
  }
  return BeginsWithDrive(currentFolder) ? currentFolder.substr(0, 2) + path : path;
}

}  // namespace

bool HostPaths::AddMapping(std::string_view mapping) {
  const size_t equals = mapping.find('=');
  if (equals == std::string_view::npos || equals == 0 || equals + 1 == mapping.size()) {
    return false;
  }
  PathText prefix = PathText::Split(Typed(mapping.substr(0, equals)), codePage_);
  prefix.ResolveSteps();
  mappings_.push_back({std::move(prefix), HostPath(std::string(mapping.substr(equals + 1)))});
  return true;
}

bool HostPaths::AddMappings(std::string_view mappings) {
  while (!mappings.empty()) {
    const std::string_view mapping = mappings.substr(0, mappings.find(';'));
    if (!mapping.empty() && !AddMapping(mapping)) {
      return false;
    }
    mappings.remove_prefix(std::min(mapping.size() + 1, mappings.size()));
  }
  return true;
}

void HostPaths::SetProject(std::string_view projectDirectory, std::string_view projectPath) {
  std::optional<Project> project;
  PathText directory = PathText::Split(projectDirectory, codePage_);
  if (!directory.root.empty() && !directory.IsHostPath() &&
      !(HostHasDrives() && IsThere(Join(Locate(directory, std::nullopt))))) {
    directory.ResolveSteps();
    const Place file = Locate(PathText::Split(projectPath, codePage_), std::nullopt);
    project = {std::move(directory), Join(file).Folder()};
  }
  folders_.Forget();
  const std::lock_guard lock(mutex_);
  project_ = std::move(project);
}

HostPath HostPaths::ToHost(std::string_view path, Spelling spelling) const {
  std::optional<Project> project;
  {
    const std::lock_guard lock(mutex_);
    project = project_;
  }
  PathText text = PathText::Split(path, codePage_);
  const bool endsWithSeparator = text.endsWithSeparator;
  const Place place = Locate(std::move(text), project);
  const HostPath found = spelling == Spelling::kExact
                             ? Join(place)
                             : FindBelow(place.folder, place.components, names_, folders_);
  return endsWithSeparator ? found.Below("") : found;
}

HostPaths::Place HostPaths::Locate(PathText path, const std::optional<Project>& project) const {
  if (path.IsHostPath()) {
    return {HostPath("/"), std::move(path.components)};
  }
  if (!path.root.empty()) {
    path.ResolveSteps();
  }
  if (const Mapping* const mapping = FindMapping(path)) {
    return {mapping->target, Rest(path, mapping->prefix.components.size())};
  }
  if (project) {
    auto steps = StepsFromProject(path, project->directory, codePage_);
    if (steps && !(HostHasDrives() && IsFolderThere(path))) {
      return {project->folder, *std::move(steps)};
    }
  }
  return Unmapped(std::move(path));
}

HostPaths::Place HostPaths::Unmapped(PathText path) const {
  if (!HostHasDrives()) {
    if (path.HasDrive()) {
      path.components.insert(path.components.begin(), path.root.substr(0, 2));
    }
    return {HostPath(), std::move(path.components)};
  }
  const std::vector<std::string> share(
      path.components.begin(), path.components.begin() + static_cast<std::ptrdiff_t>(path.fixed));
  return {JoinBelow(HostPath(path.root), share, names_), Rest(path, path.fixed)};
}

// Of the path itself where it is a drive's or share's own.
bool HostPaths::IsFolderThere(const PathText& path) const {
  PathText folder = path;
  if (folder.components.size() > folder.fixed) {
    folder.components.pop_back();
  }
  return IsThere(Join(Unmapped(std::move(folder))));
}

const HostPaths::Mapping* HostPaths::FindMapping(const PathText& path) const {
  const Mapping* best = nullptr;
  for (const Mapping& mapping : mappings_) {
    const bool fits = mapping.prefix.IsPrefixOf(path, codePage_);
    if (fits &&
        (best == nullptr || mapping.prefix.components.size() >= best->prefix.components.size())) {
      best = &mapping;
    }
  }
  return best;
}

std::optional<std::string> HostPaths::FullPathName(std::string_view path) const {
  if (path.empty()) {
    return std::nullopt;
  }
  PathText text = PathText::Split(path, codePage_);
  if (text.root.empty()) {
    const std::optional<HostPath> folder = CurrentFolder();
    if (!folder) {
      return std::nullopt;
    }
    text = PathText::Split(names_.Text(*folder) + '/' + std::string(path), codePage_);
  }
  text.ResolveSteps();
  text.endsWithSeparator = text.endsWithSeparator && !text.components.empty();
  std::string full = text.Join(codePage_);
  if (full.size() >= kPathBuffer) {
    return std::nullopt;
  }
  return full;
}

std::string HostPaths::GivenPath(std::string_view typed) const {
  std::string path;
  if (HostHasDrives()) {
    path = WithDrive(Typed(typed), names_.Text(CurrentFolder().value_or(HostPath())));
  } else {
    path = IsOfThisHost(typed) ? names_.Text(HostPath(std::string(typed))) : Typed(typed);
  }
  std::optional<std::string> full = FullPathName(path);
  return full ? *std::move(full) : path;
}

std::string HostPaths::ExecutablePath() const {
  return names_.Text(ExecutableOfProgram());
}

}  // namespace velkor
