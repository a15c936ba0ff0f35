#include "platform/name_lookup.h"

#include <dirent.h>
#include <memory>
#include <optional>
#include <sys/stat.h>

namespace velkor {
namespace {

struct CloseFolder {
  void operator()(DIR* folder) const { closedir(folder); }
};

// None too when there are several: which one is meant, nobody but the user can say.
std::optional<std::string> FindIgnoringCase(const HostPath& folder, const std::string& component,
                                            const HostNames& names) {
  const bool isCurrent = folder.Bytes().empty();
  const std::unique_ptr<DIR, CloseFolder> listing(opendir(isCurrent ? "." : folder.Text()));
  if (!listing) {
    return std::nullopt;
  }
  std::optional<std::string> found;
  // No other thread sees this listing.
  // cppcheck-suppress readdirCalled
  // NOLINTNEXTLINE(concurrency-mt-unsafe)
  while (const dirent* const entry = readdir(listing.get())) {
    if (names.IsSpelling(entry->d_name, component)) {
      if (found) {
        return std::nullopt;
      }
      found = entry->d_name;
    }
  }
  return found;
}

std::optional<HostPath> FindComponent(const HostPath& folder, const std::string& component,
                                      const HostNames& names) {
  for (const std::string& spelling : {names.Name(component), component}) {
    HostPath path = folder.Below(spelling);
    if (IsThere(path)) {
      return path;
    }
  }
  const std::optional<std::string> found = FindIgnoringCase(folder, component, names);
  return found ? std::optional(folder.Below(*found)) : std::nullopt;
}

}  // namespace

bool IsThere(const HostPath& path) {
  struct stat status {};
  return path.IsUsable() && lstat(path.Text(), &status) == 0;
}

HostPath JoinBelow(HostPath folder, const std::vector<std::string>& components,
                   const HostNames& names) {
  for (const std::string& component : components) {
    folder = folder.Below(names.Name(component));
  }
  return folder;
}

HostPath FindBelow(HostPath folder, const std::vector<std::string>& components,
                   const HostNames& names) {
  HostPath asSpelt = JoinBelow(folder, components, names);
  if (IsThere(asSpelt)) {
    return asSpelt;
  }
  for (size_t i = 0; i < components.size(); ++i) {
    std::optional<HostPath> found = FindComponent(folder, components[i], names);
    if (!found) {
      const auto rest = components.begin() + static_cast<std::ptrdiff_t>(i);
      return JoinBelow(std::move(folder), {rest, components.end()}, names);
    }
    folder = *std::move(found);
  }
  return folder;
}

}  // namespace velkor
