#include "platform/settings_tree.h"

#include <algorithm>

#include "platform/ini_text.h"

namespace velkor {
namespace {

// Takes the next component off a path. "\" may also be the second half of a character.
std::string_view TakeComponent(std::string_view& path, const CodePage& codePage) {
  size_t end = 0;
  while (end < path.size() && path[end] != '\\') {
    end += codePage.CharLength(path, end);
  }
  const std::string_view component = path.substr(0, end);
  path.remove_prefix(std::min(end + 1, path.size()));
  return component;
}

}  // namespace

SettingsTree::SettingsTree(const CodePage& codePage) : codePage_(&codePage), nodes_(1) {}

SettingsTree::SettingsTree(const CodePage& codePage, InputFile& file)
    : SettingsTree(codePage, ReadIniText(file, kMaxBytes)) {}

SettingsTree::SettingsTree(const CodePage& codePage, std::string_view text)
    : SettingsTree(codePage) {
  IniLines lines(text.substr(0, kMaxBytes), codePage);
  IniLines::Line line;
  Key current = 0;
  while (lines.Next(line)) {
    if (line.isSection) {
      current = Make(line.name);
    } else {
      nodes_[current].settings.push_back({std::string(line.name), std::string(line.value)});
    }
  }
}

SettingsTree::Key SettingsTree::Make(std::string_view path) {
  Key key = 0;
  while (!path.empty()) {
    const std::string_view component = TakeComponent(path, *codePage_);
    std::optional<Key> subkey = FindSubkey(key, component);
    if (!subkey) {
      subkey = nodes_.size();
      nodes_[key].subkeys.push_back(*subkey);
      nodes_.push_back({std::string(component), {}, {}});
    }
    key = *subkey;
  }
  return key;
}

std::optional<SettingsTree::Key> SettingsTree::FindSubkey(Key key, std::string_view name) const {
  for (const size_t subkey : nodes_[key].subkeys) {
    if (codePage_->EqualIgnoreCase(nodes_[subkey].name, name)) {
      return subkey;
    }
  }
  return std::nullopt;
}

std::optional<SettingsTree::Key> SettingsTree::Open(std::string_view path) const {
  std::optional<Key> key = 0;
  while (key && !path.empty()) {
    key = FindSubkey(*key, TakeComponent(path, *codePage_));
  }
  return key;
}

std::optional<std::string> SettingsTree::Value(Key key, std::string_view name, size_t size) const {
  for (const Setting& setting : nodes_[key].settings) {
    if (codePage_->EqualIgnoreCase(setting.name, name)) {
      return setting.value.size() < size ? std::optional(setting.value) : std::nullopt;
    }
  }
  return std::nullopt;
}

std::vector<std::string> SettingsTree::Subkeys(Key key) const {
  std::vector<std::string> names;
  for (const size_t subkey : nodes_[key].subkeys) {
    names.push_back(nodes_[subkey].name);
  }
  return names;
}

}  // namespace velkor
