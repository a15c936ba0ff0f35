#include "readers/gcc/path_pattern.h"

#include <algorithm>
#include <cstddef>

namespace velkor {
namespace {

constexpr std::string_view kAnyComponents = "**";

std::vector<std::string_view> ComponentsOf(std::string_view path) {
  std::vector<std::string_view> components;
  while (!path.empty()) {
    const std::string_view component = path.substr(0, path.find('/'));
    path.remove_prefix(std::min(component.size() + 1, path.size()));
    if (!component.empty() && component != ".") {
      components.push_back(component);
    }
  }
  return components;
}

size_t NextCharacter(std::string_view text, size_t position) {
  do {
    ++position;
  } while (position < text.size() && (static_cast<unsigned char>(text[position]) & 0xC0U) == 0x80);
  return position;
}

// Where a "*" may have taken too little, only the last one has to be tried again.
bool MatchesComponent(std::string_view pattern, std::string_view text) {
  size_t star = std::string_view::npos;
  size_t starText = 0;
  size_t next = 0;
  size_t position = 0;
  while (position < text.size()) {
    const char wanted = next < pattern.size() ? pattern[next] : '\0';
    if (wanted == '*') {
      star = next++;
      starText = position;
    } else if (wanted == '?') {
      ++next;
      position = NextCharacter(text, position);
    } else if (next < pattern.size() && wanted == text[position]) {
      ++next;
      ++position;
    } else if (star != std::string_view::npos) {
      next = star + 1;
      position = ++starText;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', next) == std::string_view::npos;
}

}  // namespace

PathPattern::PathPattern(std::string_view text) {
  for (const std::string_view component : ComponentsOf(text)) {
    components_.emplace_back(component);
  }
}

bool PathPattern::Matches(std::string_view path) const {
  const std::vector<std::string_view> steps = ComponentsOf(path);
  size_t star = components_.size();
  size_t starStep = 0;
  size_t next = 0;
  size_t step = 0;
  while (step < steps.size()) {
    if (next < components_.size() && components_[next] == kAnyComponents) {
      star = next++;
      starStep = step;
    } else if (next < components_.size() && MatchesComponent(components_[next], steps[step])) {
      ++next;
      ++step;
    } else if (star < components_.size()) {
      next = star + 1;
      step = ++starStep;
    } else {
      return false;
    }
  }
  return std::all_of(components_.begin() + static_cast<std::ptrdiff_t>(next), components_.end(),
                     [](const std::string& component) { return component == kAnyComponents; });
}

}  // namespace velkor
