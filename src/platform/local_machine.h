#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/host.h"
#include "platform/host_file_system.h"
#include "platform/machine_options.h"

namespace velkor {

// The machine that the program runs on, as its command line and environment describe it: owns all
// that a Host refers to.
class LocalMachine {
 public:
  // None when an option names nothing usable; error then says what, for the user.
  static std::unique_ptr<LocalMachine> Create(const MachineOptions& options, std::string& error);

  Host& GetHost() { return host_; }
  const CodePage& GetCodePage() const { return codePage_; }
  // What the user gave here, as a path and as a text of the run's code page (see PathHost).
  std::string AbsolutePath(std::string_view typed) const { return paths_.GivenPath(typed); }
  std::string Typed(std::string_view bytes) const { return paths_.Typed(bytes); }

 private:
  LocalMachine(CodePage codePage, const MachineOptions& options);

  bool AddMappings(const MachineOptions& options, std::string& error);

  const CodePage codePage_;
  HostPaths paths_{codePage_, CodePage::OfHost()};
  HostFileSystem files_{paths_};
  BuiltInResources resources_;
  Host host_;
};

}  // namespace velkor
