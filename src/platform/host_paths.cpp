#include "platform/host_paths.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/name_lookup.h"

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

std::string FolderOf(const std::string& hostPath) {
  const size_t separator = hostPath.rfind('/');
  return separator == std::string::npos ? "." : hostPath.substr(0, separator + 1);
}

}  // namespace

bool HostPaths::AddMapping(std::string_view mapping) {
  const size_t equals = mapping.find('=');
  if (equals == std::string_view::npos || equals == 0 || equals + 1 == mapping.size()) {
    return false;
  }
  PathText prefix = PathText::Split(mapping.substr(0, equals), codePage_);
  prefix.ResolveSteps();
  mappings_.push_back({std::move(prefix), std::string(mapping.substr(equals + 1))});
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
  if (directory.HasDrive() || directory.fixed > 0) {
    directory.ResolveSteps();
    project = {std::move(directory), FolderOf(ToHost(projectPath, std::nullopt))};
  }
  const std::lock_guard lock(mutex_);
  project_ = std::move(project);
}

std::string HostPaths::ToHost(std::string_view path) const {
  std::optional<Project> project;
  {
    const std::lock_guard lock(mutex_);
    project = project_;
  }
  return ToHost(path, project);
}

std::string HostPaths::ToHost(std::string_view path, const std::optional<Project>& project) const {
  PathText text = PathText::Split(path, codePage_);
  if (text.IsHostPath() || path.empty()) {
    const std::string spelt(path);
    return IsThere(spelt) || path.empty()
               ? spelt
               : FindBelow("/", text.components, text.endsWithSeparator, codePage_);
  }
  if (!text.root.empty()) {
    text.ResolveSteps();
  }
  if (const Mapping* const mapping = FindMapping(text)) {
    return FindBelow(mapping->target, Rest(text, mapping->prefix.components.size()),
                     text.endsWithSeparator, codePage_);
  }
  if (project) {
    if (const auto steps = StepsFromProject(text, project->directory, codePage_)) {
      return FindBelow(project->folder, *steps, text.endsWithSeparator, codePage_);
    }
  }
  if (text.HasDrive()) {
    text.components.insert(text.components.begin(), text.root.substr(0, 2));
  }
  return FindBelow("", text.components, text.endsWithSeparator, codePage_);
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
    const std::string folder = std::filesystem::current_path(error).string();
    if (error) {
      return std::nullopt;
    }
    text = PathText::Split(folder + '/' + std::string(path), codePage_);
  }
  text.ResolveSteps();
  text.endsWithSeparator = text.endsWithSeparator && !text.components.empty();
  std::string full = text.Join(codePage_);
  if (full.size() >= kPathBuffer) {
    return std::nullopt;
  }
  return full;
}

std::string HostPaths::ExecutablePath() const {
  std::error_code error;
  const std::filesystem::path path = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? std::string() : path.string();
}

}  // namespace velkor
