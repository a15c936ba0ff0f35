#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/host.h"
#include "platform/host_file_system.h"
#include "ui/window_options.h"

namespace velkor {

// The machine that the program runs on, as its command line and environment describe it.
class WindowHost {
 public:
  // None when an option names nothing usable; error then says what, for the user.
  static std::unique_ptr<WindowHost> Create(const WindowOptions& options, std::string& error);

  Host& GetHost() { return host_; }
  // The path against the current folder; as it stands when that has no result.
  std::string AbsolutePath(const std::string& path) const;

 private:
  WindowHost(CodePage codePage, const WindowOptions& options);

  bool AddMappings(const WindowOptions& options, std::string& error);

  const CodePage codePage_;
  HostPaths paths_{codePage_};
  HostFileSystem files_{paths_};
  BuiltInResources resources_;
  Host host_;
};

}  // namespace velkor
