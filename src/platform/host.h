#pragma once

#include <cstddef>
#include <string>

#include "platform/code_page.h"
#include "platform/file_system.h"
#include "platform/host_paths.h"
#include "platform/resources.h"

namespace velkor {

// What the engine gets from the machine it runs on, each replaceable in tests. Owned by the
// program's start; every part keeps a reference. Not changed while jobs run.
struct Host {
  const CodePage& codePage;
  FileSystem& files;
  PathHost& paths;
  const ResourceStore& resources;
  // Folder of the system library table files; empty: that of the installation.
  std::string dataFolder;
  // How many threads may work at once for one job; 0: as many as run at once on this machine.
  size_t threads = 0;
};

}  // namespace velkor
