#include "files/sibling_path.h"

#include "files/paths.h"
#include "platform/temporary_name.h"

namespace velkor {

std::string SiblingPath(std::string_view path, const CodePage& codePage) {
  constexpr size_t kMaxNamePart = 200;  // leaves room for the rest in one component
  std::string name(FileNamePart(path, codePage));
  name.resize(codePage.CutLength(name, kMaxNamePart));
  return std::string(DirectoryPart(path, codePage)) + name + TemporaryTail();
}

}  // namespace velkor
