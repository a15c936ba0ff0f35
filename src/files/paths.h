#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/host.h"

namespace velkor {

// Path operations on file names. A separator is ":", "\" or "/"; whole characters are stepped
// over, so the second byte of a double-byte character is never one. No state; any thread.

// Begins with "\" or "/", or has ":" as its second character.
bool IsAbsolute(std::string_view path, const CodePage& codePage);
// Up to and including the last separator; empty when there is none.
std::string_view DirectoryPart(std::string_view path, const CodePage& codePage);
// After the last separator; the whole path when there is none.
std::string_view FileNamePart(std::string_view path, const CodePage& codePage);
// The file-name part without its extension.
std::string_view BaseName(std::string_view path, const CodePage& codePage);
// From the last "." of the file-name part that is not its first character, the dot included.
std::string_view Extension(std::string_view path, const CodePage& codePage);
// Directory, "\" unless it is empty or ends with "\", name.
std::string Join(std::string_view directory, std::string_view name, const CodePage& codePage);
std::string ReplaceExtension(std::string_view path, std::string_view extension,
                             const CodePage& codePage);
// path against base, resolved by the host; the joined text when that fails.
std::string FullPath(std::string_view path, std::string_view base, const Host& host);
// The same for a path that may be absolute already, which is then answered as it stands.
std::string AbsoluteAgainst(std::string_view path, std::string_view base, const Host& host);
// relative against the folder of the program itself.
std::string ProgramDataPath(std::string_view relative, const Host& host);
// A file of the installation: in "..\dattarn\" beside the program where that folder is there, else
// in "../share/velkor/", and where neither is, where the first would be.
std::string InstalledPath(std::string_view name, const Host& host);

}  // namespace velkor
