#include "readers/gcc/source_finder.h"

#include <utility>

#include "platform/host_path.h"
#include "platform/path_text.h"

namespace velkor {

void SourceFinder::BeginUnit(std::string_view graphPath) {
  folder_ = FolderPart(graphPath, codePage_);
  isFound_ = false;
}

std::optional<int64_t> SourceFinder::ModifiedAt(std::string_view source) {
  if (IsRootedOnHost(source)) {
    return files_.ModifiedAt(source);
  }
  const bool isForeign = !HostHasDrives() && source.find('\\') != source.npos;
  if (source.empty() || source.front() == '<' || isForeign) {
    return std::nullopt;
  }
  if (isFound_) {
    return files_.ModifiedAt(std::string(folder_).append(source));
  }
  const size_t end = source.rfind('/');
  const bool mayStepBack = source.find("..") != source.npos;
  return end == source.npos || mayStepBack ? Search(FoldersUpwards(), source)
                                           : Search(FoldersWith(source.substr(0, end)), source);
}

std::optional<int64_t> SourceFinder::Search(const std::vector<std::string>& folders,
                                            std::string_view source) {
  for (const std::string& folder : folders) {
    if (const auto time = files_.ModifiedAt(std::string(folder).append(source))) {
      isFound_ = true;
      folder_ = folder;
      return time;
    }
  }
  return std::nullopt;
}

const std::vector<std::string>& SourceFinder::FoldersWith(std::string_view below) {
  key_.assign(folder_).append(1, '\0').append(below);
  const auto known = foldersWith_.find(key_);
  if (known != foldersWith_.end()) {
    return known->second;
  }
  std::vector<std::string> folders = FoldersUpwards();
  std::erase_if(folders, [&](const std::string& folder) {
    return !files_.IsDirectory(std::string(folder).append(below));
  });
  return foldersWith_.emplace(key_, std::move(folders)).first->second;
}

std::vector<std::string> SourceFinder::FoldersUpwards() const {
  std::vector<std::string> folders;
  for (std::string folder = folder_; !folder.empty();
       folder.resize(FolderPart(folder.substr(0, folder.size() - 1), codePage_).size())) {
    folders.push_back(folder);
  }
  return folders;
}

}  // namespace velkor
