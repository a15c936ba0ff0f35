#include "readers/gcc/folder_search.h"

#include <algorithm>
#include <set>
#include <utility>

namespace velkor {
namespace {

// "3.25.1", "3.28.0-rc2"
bool IsVersion(std::string_view name) {
  const std::string_view number = name.substr(0, name.find('-'));
  return !number.empty() && number.find_first_not_of("0123456789.") == std::string_view::npos;
}

bool IsNeverSearched(std::string_view folder, std::string_view name) {
  const bool inCMakeFiles = folder == "CMakeFiles" || folder.ends_with("/CMakeFiles");
  return name.starts_with('.') || name == "CMakeScratch" || name == "meson-private" ||
         (inCMakeFiles && IsVersion(name));
}

class FolderSearcher {
 public:
  FolderSearcher(FileSystem& files, std::string_view folder,
                 const std::vector<PathPattern>& exclude)
      : files_(files), folder_(folder), exclude_(exclude) {
    contents_.isPatternUsed.resize(exclude.size());
  }

  FolderContents Search() {
    SearchBelow("");
    // What links lead to comes after everything that is there itself.
    while (!links_.empty()) {
      std::vector<std::string> links = std::exchange(links_, {});
      std::ranges::sort(links);
      std::ranges::for_each(links, [this](const std::string& link) { SearchBelow(link); });
    }
    for (std::vector<std::string>* paths :
         {&contents_.callGraphs, &contents_.objects, &contents_.unreadable}) {
      std::ranges::sort(*paths);
    }
    return std::move(contents_);
  }

 private:
  // By paths below the given folder.
  void SearchBelow(const std::string& start) {
    std::vector<std::string> pending = {start};
    while (!pending.empty()) {
      const std::string path = std::move(pending.back());
      pending.pop_back();
      std::vector<std::string> folders = FoldersIn(path);
      std::ranges::sort(folders, std::greater<>());
      pending.insert(pending.end(), folders.begin(), folders.end());
    }
  }

  // Those to be searched; the files are taken up.
  std::vector<std::string> FoldersIn(const std::string& path) {
    std::vector<std::string> folders;
    const FolderListing listing = files_.ListFolder(FullPath(path));
    if (!listing.isWhole) {
      contents_.unreadable.push_back(FullPath(path));
    }
    if (listing.entries.empty() || !visited_.insert(listing.identity).second) {
      return folders;
    }
    for (const FolderEntry& entry : listing.entries) {
      const std::string below = path.empty() ? entry.name : path + "/" + entry.name;
      if (entry.kind == FolderEntry::Kind::kFolder) {
        if (!IsNeverSearched(FullPath(path), entry.name) && !IsExcluded(below)) {
          (entry.isLink ? links_ : folders).push_back(below);
        }
      } else {
        AddFile(below);
      }
    }
    return folders;
  }

  void AddFile(const std::string& path) {
    const bool isObject = path.ends_with(".o") || path.ends_with(".obj");
    if ((isObject || path.ends_with(".ci")) && !IsExcluded(path)) {
      (isObject ? contents_.objects : contents_.callGraphs).push_back(FullPath(path));
    }
  }

  bool IsExcluded(std::string_view path) {
    bool excluded = false;
    for (size_t i = 0; i < exclude_.size(); ++i) {
      if (exclude_[i].Matches(path)) {
        contents_.isPatternUsed[i] = true;
        excluded = true;
      }
    }
    return excluded;
  }

  std::string FullPath(const std::string& path) const {
    if (path.empty()) {
      return folder_;
    }
    return folder_.ends_with('/') ? folder_ + path : folder_ + "/" + path;
  }

  FileSystem& files_;
  const std::string folder_;
  const std::vector<PathPattern>& exclude_;
  FolderContents contents_;
  std::vector<std::string> links_;  // to folders, which are not searched yet
  std::set<std::pair<uint64_t, uint64_t>> visited_;
};

}  // namespace

FolderContents SearchFolder(FileSystem& files, std::string_view folder,
                            const std::vector<PathPattern>& exclude) {
  return FolderSearcher(files, folder, exclude).Search();
}

}  // namespace velkor
