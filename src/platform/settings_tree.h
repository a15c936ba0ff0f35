#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/code_page.h"
#include "platform/file_system.h"

namespace velkor {

// The settings of an installation: a tree of keys, each with named values and subkeys, read once
// from an INI file and never written. A section of the file is a key, named by its whole path
// ("Software\Company\Program"); the keys on the way to it exist too. Names are compared ignoring
// letter case, a separator at the end of a path means nothing, two equal sections are one key, and
// of two equal values the first counts. Lines are those of any INI file (see IniLines).
//
// Memory is bounded: at most kMaxBytes of the file are looked at. Any thread may ask.
class SettingsTree {
 public:
  static constexpr size_t kMaxBytes = size_t{16} << 10;

  // A key of this tree; handed out by Open.
  using Key = size_t;

  // Without any key.
  explicit SettingsTree(const CodePage& codePage);
  SettingsTree(const CodePage& codePage, InputFile& file);
  SettingsTree(const CodePage& codePage, std::string_view text);

  std::optional<Key> Open(std::string_view path) const;
  // None when there is no such value, or when it does not fit into size bytes with its
  // terminator: such a value cannot be read at all, not in part.
  std::optional<std::string> Value(Key key, std::string_view name, size_t size) const;
  // Their names as spelt, in the order in which the file first names them.
  std::vector<std::string> Subkeys(Key key) const;

 private:
  struct Setting {
    std::string name;
    std::string value;
  };
  struct Node {
    std::string name;
    std::vector<size_t> subkeys;  // positions in nodes_
    std::vector<Setting> settings;
  };

  // The key of that path, made where it is missing.
  Key Make(std::string_view path);
  std::optional<Key> FindSubkey(Key key, std::string_view name) const;

  const CodePage* codePage_;
  std::vector<Node> nodes_;  // the first is the root
};

}  // namespace velkor
