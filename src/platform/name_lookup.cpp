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

// Of several names that differ in letter case only, the first in byte order.
std::optional<std::string> FindIgnoringCase(const std::string& folder, const std::string& component,
                                            const CodePage& codePage) {
  const std::unique_ptr<DIR, CloseFolder> listing(opendir(folder.empty() ? "." : folder.c_str()));
  if (!listing) {
    return std::nullopt;
  }
  const CodePage utf8 = CodePage::Utf8();
  const std::string inUtf8 = codePage.ToUtf8(component);
  std::optional<std::string> found;
  // No other thread sees this listing.
  // cppcheck-suppress readdirCalled
  // NOLINTNEXTLINE(concurrency-mt-unsafe)
  while (const dirent* const entry = readdir(listing.get())) {
    const std::string_view name = entry->d_name;
    const bool fits =
        codePage.EqualIgnoreCase(name, component) || utf8.EqualIgnoreCase(name, inUtf8);
    if (fits && (!found || name < *found)) {
      found = name;
    }
  }
  return found;
}

std::string JoinAll(std::string path, const std::vector<std::string>& components) {
  for (const std::string& component : components) {
    if (!path.empty() && path.back() != '/') {
      path += '/';
    }
    path += component;
  }
  return path;
}

}  // namespace

bool IsThere(const std::string& hostPath) {
  struct stat status {};
  return hostPath.find('\0') == std::string::npos && lstat(hostPath.c_str(), &status) == 0;
}

std::string FindBelow(std::string folder, const std::vector<std::string>& components,
                      bool endsWithSeparator, const CodePage& codePage) {
  const std::string end = endsWithSeparator ? "/" : "";
  std::string path = JoinAll(folder, components) + end;
  if (IsThere(path)) {
    return path;
  }
  path = std::move(folder);
  for (size_t i = 0; i < components.size(); ++i) {
    std::string next = JoinAll(path, {components[i]});
    if (!IsThere(next)) {
      const std::optional<std::string> found = FindIgnoringCase(path, components[i], codePage);
      if (!found) {
        const auto rest = components.begin() + static_cast<std::ptrdiff_t>(i);
        return JoinAll(std::move(path), {rest, components.end()}) + end;
      }
      next = JoinAll(std::move(path), {*found});
    }
    path = std::move(next);
  }
  return path + end;
}

}  // namespace velkor
