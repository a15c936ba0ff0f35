#include "document/output_path.h"

#include <algorithm>

#include "files/paths.h"
#include "platform/limits.h"

namespace velkor {

std::vector<std::string> ProgramFiles(Host& host) {
  std::vector<std::string> paths{host.paths.ExecutablePath()};
  for (const char* name :
       {"velkor", "velkor-cli", "..\\dattarn\\help.ini", "../share/velkor/help.ini"}) {
    paths.push_back(ProgramDataPath(name, host));
  }
  return paths;
}

bool CheckOutputPath(const std::string& path, const std::vector<std::string>& inputs, Host& host,
                     StkReporter& reporter) {
  if (path.size() > kMaxPathLength) {
    reporter.PostWarning(MessageKey::kW9407, {MessageFile{path}});
    return false;
  }
  const bool isInput = std::any_of(inputs.begin(), inputs.end(), [&](const std::string& input) {
    return host.files.IsSameFile(path, input);
  });
  if (isInput) {
    reporter.PostWarning(MessageKey::kW9402, {MessageFile{path}});
  }
  return !isInput;
}

}  // namespace velkor
