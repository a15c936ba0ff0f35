#include "files/paths.h"

namespace velkor {

namespace {

bool IsSeparator(char character) {
  return character == ':' || character == '\\' || character == '/';
}

// Position after the last separator; 0 when there is none.
size_t FileNameStart(std::string_view path, const CodePage& codePage) {
  size_t start = 0;
  for (size_t i = 0; i < path.size(); i += codePage.CharLength(path, i)) {
    if (IsSeparator(path[i])) {
      start = i + 1;
    }
  }
  return start;
}

// Position of the extension's dot; the end of the name when there is none.
size_t ExtensionStart(std::string_view fileName, const CodePage& codePage) {
  size_t start = fileName.size();
  for (size_t i = 0; i < fileName.size(); i += codePage.CharLength(fileName, i)) {
    if (fileName[i] == '.' && i > 0) {
      start = i;
    }
  }
  return start;
}

bool EndsWithBackslash(std::string_view text, const CodePage& codePage) {
  char last = '\0';
  for (size_t i = 0; i < text.size(); i += codePage.CharLength(text, i)) {
    last = text[i];  // the first byte of a double-byte character is never a backslash
  }
  return last == '\\';
}

}  // namespace

bool IsAbsolute(std::string_view path, const CodePage& codePage) {
  if (path.empty()) {
    return false;
  }
  const size_t second = codePage.CharLength(path, 0);
  return path[0] == '\\' || path[0] == '/' || (second < path.size() && path[second] == ':');
}

std::string_view DirectoryPart(std::string_view path, const CodePage& codePage) {
  return path.substr(0, FileNameStart(path, codePage));
}

std::string_view FileNamePart(std::string_view path, const CodePage& codePage) {
  return path.substr(FileNameStart(path, codePage));
}

std::string_view BaseName(std::string_view path, const CodePage& codePage) {
  const std::string_view name = FileNamePart(path, codePage);
  return name.substr(0, ExtensionStart(name, codePage));
}

std::string_view Extension(std::string_view path, const CodePage& codePage) {
  const std::string_view name = FileNamePart(path, codePage);
  return name.substr(ExtensionStart(name, codePage));
}

std::string Join(std::string_view directory, std::string_view name, const CodePage& codePage) {
  std::string joined(directory);
  if (!directory.empty() && !EndsWithBackslash(directory, codePage)) {
    joined += '\\';
  }
  joined += name;
  return joined;
}

std::string ReplaceExtension(std::string_view path, std::string_view extension,
                             const CodePage& codePage) {
  std::string replaced(DirectoryPart(path, codePage));
  replaced += BaseName(path, codePage);
  replaced += extension;
  return replaced;
}

std::string FullPath(std::string_view path, std::string_view base, const Host& host) {
  std::string joined = Join(base, path, host.codePage);
  std::optional<std::string> resolved = host.paths.FullPathName(joined);
  return resolved ? *std::move(resolved) : joined;
}

std::string AbsoluteAgainst(std::string_view path, std::string_view base, const Host& host) {
  return IsAbsolute(path, host.codePage) ? std::string(path) : FullPath(path, base, host);
}

std::string ProgramDataPath(std::string_view relative, const Host& host) {
  const std::string program = host.paths.ExecutablePath();
  return FullPath(relative, DirectoryPart(program, host.codePage), host);
}

std::string InstalledPath(std::string_view name, const Host& host) {
  constexpr std::string_view kDataFolder = "..\\dattarn";
  constexpr std::string_view kSharedFolder = "../share/velkor";
  const std::string folder = ProgramDataPath(kDataFolder, host);
  const std::string shared = ProgramDataPath(kSharedFolder, host);
  const bool isShared = !host.files.IsDirectory(folder) && host.files.IsDirectory(shared);
  return FullPath(name, isShared ? shared : folder, host);
}

}  // namespace velkor
