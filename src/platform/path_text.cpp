#include "platform/path_text.h"

#include <algorithm>
#include <utility>

#include "platform/host_path.h"

namespace velkor {
namespace {

bool IsSeparator(std::string_view path, size_t position) {
  return position < path.size() && (path[position] == '\\' || path[position] == '/');
}

// Moves the position behind the root.
std::string TakeRoot(std::string_view path, size_t& position) {
  if (BeginsWithDrive(path)) {
    position = 2;
    return std::string(path.substr(0, 2)) + '\\';
  }
  if (!IsSeparator(path, 0)) {
    return "";
  }
  if (path[0] == '/') {
    position = 1;
    return "/";
  }
  position = IsSeparator(path, 1) ? 2 : 1;
  return std::string(position, '\\');
}

// A half character at the end of a malformed name would become a whole one with the "\" after it.
bool SwallowsBackslash(std::string_view component, const CodePage& codePage) {
  size_t last = 0;
  for (size_t position = 0; position < component.size();
       position += codePage.CharLength(component, position)) {
    last = position;
  }
  return codePage.CharLength(std::string(component.substr(last)) + '\\', 0) >
         component.size() - last;
}

}  // namespace

bool BeginsWithDrive(std::string_view path) {
  return path.size() >= 2 && path[1] == ':' &&
         ((path[0] >= 'A' && path[0] <= 'Z') || (path[0] >= 'a' && path[0] <= 'z'));
}

bool IsRootedOnHost(std::string_view path) {
  return path.starts_with('/') ||
         (HostHasDrives() && (path.starts_with('\\') || BeginsWithDrive(path)));
}

std::string_view FolderPart(std::string_view path, const CodePage& codePage) {
  size_t end = 0;
  for (size_t position = 0; position < path.size();) {
    const bool separates = IsSeparator(path, position);
    position += codePage.CharLength(path, position);
    end = separates ? position : end;
  }
  return path.substr(0, end);
}

std::vector<std::string_view> PathSteps(std::string_view path, const CodePage& codePage) {
  std::vector<std::string_view> steps;
  for (size_t start = 0; start < path.size();) {
    size_t end = start;
    while (end < path.size() && !IsSeparator(path, end)) {
      end += codePage.CharLength(path, end);
    }
    const std::string_view step = path.substr(start, end - start);
    start = end + 1;
    if (step == ".." && !steps.empty() && steps.back() != "..") {
      steps.pop_back();
    } else if (!step.empty() && step != ".") {
      steps.push_back(step);
    }
  }
  return steps;
}

PathText PathText::Split(std::string_view path, const CodePage& codePage) {
  constexpr size_t kServerAndShare = 2;
  PathText text;
  size_t position = 0;
  text.root = TakeRoot(path, position);
  size_t start = position;
  while (position < path.size()) {
    if (!IsSeparator(path, position)) {
      position += codePage.CharLength(path, position);
      continue;
    }
    if (position > start) {
      text.components.emplace_back(path.substr(start, position - start));
    }
    start = ++position;
  }
  text.endsWithSeparator = start == path.size() && !text.components.empty();
  if (start < path.size()) {
    text.components.emplace_back(path.substr(start));
  }
  if (text.root == "\\\\") {
    text.fixed = std::min(kServerAndShare, text.components.size());
  }
  return text;
}

void PathText::ResolveSteps() {
  size_t kept = fixed;
  for (size_t i = fixed; i < components.size(); ++i) {
    if (components[i] == "..") {
      kept = std::max(kept, fixed + 1) - 1;
    } else if (components[i] != ".") {
      if (kept != i) {
        components[kept] = std::move(components[i]);
      }
      ++kept;
    }
  }
  components.resize(kept);
}

std::string PathText::Join(const CodePage& codePage) const {
  const bool withSlash = root.empty() || IsHostPath();
  std::string path = root;
  for (size_t i = 0; i < components.size(); ++i) {
    path += components[i];
    if (i + 1 < components.size() || endsWithSeparator) {
      path += withSlash || SwallowsBackslash(components[i], codePage) ? '/' : '\\';
    }
  }
  return path;
}

bool PathText::IsPrefixOf(const PathText& path, const CodePage& codePage) const {
  return codePage.EqualIgnoreCase(root, path.root) &&
         CountShared(*this, path, codePage) == components.size();
}

size_t CountShared(const PathText& left, const PathText& right, const CodePage& codePage) {
  const size_t most = std::min(left.components.size(), right.components.size());
  size_t shared = 0;
  while (shared < most &&
         codePage.EqualIgnoreCase(left.components[shared], right.components[shared])) {
    ++shared;
  }
  return shared;
}

}  // namespace velkor
