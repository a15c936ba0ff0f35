#include "ui/views/call_tree_paths.h"

namespace velkor::ui {

namespace {

// What of the name comes before its next "\"; the name loses it, and the "\".
std::string_view TakeComponent(std::string_view& name, bool& last) {
  const size_t end = name.find('\\');
  last = end == std::string_view::npos;
  const std::string_view component = name.substr(0, end);
  name.remove_prefix(last ? name.size() : end + 1);
  return component;
}

}  // namespace

CallTreePaths::Place CallTreePaths::Add(Place parent, std::string_view name) {
  Place place = parent;
  for (bool last = false; !last;) {
    const auto [found, added] = next_.try_emplace(Key(place, TakeComponent(name, last)),
                                                  static_cast<Place>(expanded_.size()));
    if (added) {
      expanded_.push_back(false);
    }
    place = found->second;
  }
  return place;
}

CallTreePaths::Place CallTreePaths::Find(Place parent, std::string_view name) const {
  Place place = parent;
  for (bool last = false; !last && place != kNowhere;) {
    const auto found = next_.find(Key(place, TakeComponent(name, last)));
    place = found == next_.end() ? kNowhere : found->second;
  }
  return place;
}

std::string CallTreePaths::Key(Place parent, std::string_view component) {
  std::string key(reinterpret_cast<const char*>(&parent), sizeof parent);
  key += component;
  return key;
}

}  // namespace velkor::ui
