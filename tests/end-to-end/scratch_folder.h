#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velkor::testing {

std::string ReadFile(const std::string& path);
void WriteFile(const std::string& path, std::string_view bytes);

// A folder of this test's own, gone with the object.
class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::string& Root() const { return root_; }
  std::string Path(std::string_view name) const { return root_ + "/" + std::string(name); }
  // The folders on the way are made. Answers the path.
  std::string Put(std::string_view name, std::string_view bytes) const;

 private:
  std::string root_;
};

// A function of a module, called by its C name.
struct ModuleFunction {
  std::string name;
  std::string frame = "4";
  std::vector<std::string> calls;
  bool isStatic = false;
};

// A module that the compiler V3.70 could have written for the source. What is called but not in
// the list is declared as a function too; the call of "" is an indirect one.
std::string ModuleText(const std::string& source, const std::vector<ModuleFunction>& functions);
// A project file with these sources; directory: the "Path" it states.
std::string ProjectText(const std::string& directory, const std::vector<std::string>& sources,
                        std::string_view options = "");

// A project whose analysis takes a while: many names of one module of the greatest length.
std::string PutLongProject(const ScratchFolder& folder);

}  // namespace velkor::testing
