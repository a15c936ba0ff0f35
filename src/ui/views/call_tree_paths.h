#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace velkor::ui {

// A set of paths of the call tree: which nodes were expanded and which was selected. The path of a
// node is "\" and the function's name for each node from the top level down to it; two paths are
// equal exactly when they are the same text, also where a name holds a "\". Paths share their
// beginnings, so that adding or finding a node below a known one costs its name only, however deep
// it stands.
class CallTreePaths {
 public:
  using Place = uint32_t;           // of a path that is in the set, or is the beginning of one
  static constexpr Place kTop = 0;  // above the top level
  static constexpr Place kNowhere = 0xFFFFFFFF;

  Place Add(Place parent, std::string_view name);
  // kNowhere when no path begins so.
  Place Find(Place parent, std::string_view name) const;

  void MarkExpanded(Place place) { expanded_[place] = true; }
  bool IsExpanded(Place place) const { return place != kNowhere && expanded_[place]; }
  void SetSelected(Place place) { selected_ = place; }
  bool IsSelected(Place place) const { return place != kNowhere && place == selected_; }
  bool empty() const { return next_.empty(); }

 private:
  static std::string Key(Place parent, std::string_view component);

  std::unordered_map<std::string, Place> next_;  // by a place and what follows up to the next "\"
  std::vector<bool> expanded_ = {false};         // by place
  Place selected_ = kNowhere;
};

}  // namespace velkor::ui
