#include "files/whole_text.h"

namespace velkor {

std::optional<std::string> ReadWholeText(FileSystem& files, std::string_view path, uint64_t most) {
  const OpenResult<InputFile> opened = files.OpenForRead(path);
  if (!opened.file || opened.file->Length() > most) {
    return std::nullopt;
  }
  std::string text(static_cast<size_t>(opened.file->Length()), '\0');
  size_t size = 0;
  while (const size_t count = opened.file->Read(text.data() + size, text.size() - size)) {
    size += count;
  }
  if (size < text.size()) {
    return std::nullopt;
  }
  return text;
}

}  // namespace velkor
