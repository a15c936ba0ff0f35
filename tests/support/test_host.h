#pragma once

#include "platform/host.h"
#include "support/memory_files.h"

namespace velkor::testing {

// A whole host in memory: files, paths as on the real one, the built-in resources.
struct TestHost {
  explicit TestHost(CodePage page = CodePage::Utf8()) : codePage(std::move(page)) {}

  CodePage codePage;
  MemoryFileSystem files;
  HostPaths paths{codePage};
  BuiltInResources resources;
  Host host{codePage, files, paths, resources, "C:\\data"};
};

}  // namespace velkor::testing
