#include "platform/settings_tree.h"

#include <algorithm>

#include "platform/ini_text.h"

namespace velkor {

namespace {

// Takes the next component off a path. "\" and "]" may also be the second half of a character.
std::string_view TakeComponent(std::string_view& path, const CodePage& codePage) {
  size_t end = 0;
  while (end < path.size() && path[end] != '\\') {
    end += codePage.CharLength(path, end);
  }
  const std::string_view component = path.substr(0, end);
  path.remove_prefix(std::min(end + 1, path.size()));
  return component;
}

// The name of a section, without a line's brackets; none for a line that is no section.
std::optional<std::string_view> SectionName(std::string_view line, const CodePage& codePage) {
  const size_t end = FindLastIniBracket(line, codePage);
  if (!line.starts_with('[') || end == std::string_view::npos) {
    return std::nullopt;
  }
  return TrimIniText(line.substr(1, end - 1));
}

std::string ReadStart(InputFile& file) {
  std::string text(SettingsTree::kMaxBytes, '\0');
  size_t size = 0;
  while (size < text.size()) {
    const size_t count = file.Read(text.data() + size, text.size() - size);
    if (count == 0) {
      break;
    }
    size += count;
  }
  text.resize(size);
  return text;
}

}  // namespace

SettingsTree::SettingsTree(const CodePage& codePage) : codePage_(&codePage), nodes_(1) {}

SettingsTree::SettingsTree(const CodePage& codePage, InputFile& file)
    : SettingsTree(codePage, ReadStart(file)) {}

SettingsTree::SettingsTree(const CodePage& codePage, std::string_view text)
    : SettingsTree(codePage) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  text = text.substr(0, kMaxBytes);
  if (text.starts_with(kByteOrderMark)) {
    text.remove_prefix(kByteOrderMark.size());
  }
  std::optional<Key> current;
  while (!text.empty()) {
    const size_t length = std::min(text.find_first_of("\r\n"), text.size());
    ParseLine(TrimIniText(text.substr(0, length)), current);
    text.remove_prefix(std::min(length + 1, text.size()));
  }
}

void SettingsTree::ParseLine(std::string_view line, std::optional<Key>& current) {
  if (line.empty() || line.front() == ';') {
    return;
  }
  if (const std::optional<std::string_view> section = SectionName(line, *codePage_)) {
    current = Make(*section);
  } else if (current && line.front() != '[') {
    AddSetting(*current, line);
  }
}

void SettingsTree::AddSetting(Key key, std::string_view line) {
  const size_t equals = line.find('=');
  if (equals != std::string_view::npos) {
    nodes_[key].settings.push_back(
        {std::string(TrimIniText(line.substr(0, equals))),
         std::string(UnquoteIniValue(TrimIniText(line.substr(equals + 1))))});
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
