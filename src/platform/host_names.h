#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/code_page.h"
#include "platform/host_path.h"

namespace velkor {

// Turns names between the text of a project, in the run's code page, and the encoding of the host:
// that of its file names, its terminal and its environment. What the code page has no character
// for stands in the text as escaped bytes (see ByteEscape), so that every host path has a text
// that leads back to it. A value; any thread.
class HostNames {
 public:
  HostNames(CodePage codePage, CodePage host);

  // What was typed on this host.
  std::string Typed(std::string_view bytes) const { return ToText(bytes, false); }
  // Of a whole path. A "\" of it that is no separator on this host is none in the text.
  std::string Text(const HostPath& path) const { return ToText(path.Bytes(), !HostHasDrives()); }
  // The name on this host of one component of a text. Bytes that are no character stay.
  std::string Name(std::string_view component) const;
  // Whether a name found on this host is the component, ignoring letter case: as it is here, in
  // UTF-8, or in the bytes of the project, as an archive may have left it.
  bool IsSpelling(std::string_view found, std::string_view component) const;
  // Of a name found and of a component: when the one is a spelling of the other, they have a hash
  // in common.
  using Hashes = std::array<uint32_t, 3>;
  Hashes HashesOfFound(std::string_view found) const;
  Hashes HashesOfComponent(std::string_view component) const;

 private:
  std::string ToText(std::string_view bytes, bool escapeSeparator) const;
  std::string CharacterToText(std::string_view character) const;
  std::string CharacterToName(std::string_view character) const;

  CodePage codePage_;
  CodePage host_;
  bool sameSet_;
};

}  // namespace velkor
