#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/code_page.h"
#include "platform/file_system.h"

namespace velkor::reports {

// Finds the files that an analysis names in the repository that its configuration stands in: what
// shows findings beside the sources knows paths of the repository alone. Asks the file system for
// each name once. Paths of the host; here "/" alone separates in them, also where the host has "\\".
class SourcePlaces {
 public:
  // configuration: its path, or that of the input where there is none. folders: where the compiler
  // may have been started.
  SourcePlaces(FileSystem& files, const CodePage& codePage, std::string_view configuration,
               const std::vector<std::string>& folders);

  // The folder with the repository; that of the configuration where there is none.
  const std::string& Root() const { return root_; }
  // Below the root.
  const std::string& Configuration() const { return configuration_; }
  // A file as the compiler named it, below the root; none where it is not there. A path of another
  // machine is looked for by as many of its last parts as there are.
  std::optional<std::string> Find(std::string_view file);

 private:
  std::optional<std::string> Search(std::string_view file);
  std::optional<std::string> InRoot(std::string_view path);

  FileSystem& files_;
  const CodePage& codePage_;
  std::string root_;
  std::string configuration_;
  std::vector<std::string> folders_;
  std::unordered_map<std::string, std::optional<std::string>> found_;
};

// The commit that the working copy with this root stands at; empty where that is not known.
std::string CommitOf(FileSystem& files, const CodePage& codePage, std::string_view root);

}  // namespace velkor::reports
