#include "platform/host_paths.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

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
  if (!directory.root.empty() && !directory.IsHostPath()) {
    directory.ResolveSteps();
    const Place file = Locate(PathText::Split(projectPath, codePage_), std::nullopt);
    project = {std::move(directory), JoinBelow(file.folder, file.components, names_).Folder()};
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
                             ? JoinBelow(place.folder, place.components, names_)
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
    if (auto steps = StepsFromProject(path, project->directory, codePage_)) {
      return {project->folder, *std::move(steps)};
    }
  }
  if (path.HasDrive()) {
    path.components.insert(path.components.begin(), path.root.substr(0, 2));
  }
  return {HostPath(), std::move(path.components)};
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
    std::error_code error;
    const HostPath folder(std::filesystem::current_path(error).string());
    if (error) {
      return std::nullopt;
    }
    text = PathText::Split(names_.Text(folder) + '/' + std::string(path), codePage_);
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
  std::string path = IsOfThisHost(typed) ? names_.Text(HostPath(std::string(typed))) : Typed(typed);
  std::optional<std::string> full = FullPathName(path);
  return full ? *std::move(full) : path;
}

std::string HostPaths::ExecutablePath() const {
  std::error_code error;
  const std::filesystem::path path = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? std::string() : names_.Text(HostPath(path.string()));
}

}  // namespace velkor
