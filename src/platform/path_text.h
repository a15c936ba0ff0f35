#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/code_page.h"

namespace velkor {

// "C:", with or without more after it.
bool BeginsWithDrive(std::string_view path);
// Begins with "/"; where the host has drives, with one or with "\" too.
bool IsRootedOnHost(std::string_view path);

// In the texts of paths "\" and "/" separate, those of this host included.

// Up to and including the last separator; empty when there is none.
std::string_view FolderPart(std::string_view path, const CodePage& codePage);
// The names in it: without ".", and without ".." as far as a name before it stands for the folder
// that it leads back from. Refers to the path.
std::vector<std::string_view> PathSteps(std::string_view path, const CodePage& codePage);

// A path name taken apart, without asking whether anything of that name exists. Both "\" and "/"
// separate; the second byte of a double-byte character never does. A value; any thread.
struct PathText {
  std::string root;  // "/", "C:\", "\", "\\" (a share follows), or "" for a relative path
  size_t fixed = 0;  // so many components belong to the root: server and share
  std::vector<std::string> components;  // none is empty
  bool endsWithSeparator = false;

  static PathText Split(std::string_view path, const CodePage& codePage);

  bool IsHostPath() const { return root == "/"; }
  bool HasDrive() const { return root.size() == 3; }
  // Takes the steps "." and ".." out, as text. Nothing leads above the root.
  void ResolveSteps();
  // With "/" throughout for host paths and relative ones, else with "\".
  std::string Join(const CodePage& codePage) const;
  // Whether this path, root included, is the beginning of the other, ignoring letter case.
  bool IsPrefixOf(const PathText& path, const CodePage& codePage) const;
};

// How many components at the start of both are equal, ignoring letter case.
size_t CountShared(const PathText& left, const PathText& right, const CodePage& codePage);

}  // namespace velkor
