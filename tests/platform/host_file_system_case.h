#pragma once

#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "platform/host_file_system.h"
#include "platform/temporary_folder.h"

namespace velkor::testing {

inline std::string Content(InputFile& file) {
  std::string content(file.Length() + 1, '\0');
  content.resize(file.Read(content.data(), content.size()));
  return content;
}

// The files of a folder of its own.
class HostFileSystemCase : public ::testing::Test {
 protected:
  FileFailure ReadFailure(std::string_view path) { return files_.OpenForRead(path).failure; }
  FileFailure WriteFailure(std::string_view path) { return files_.OpenForWrite(path).failure; }

  const TemporaryFolder folder_;
  const CodePage codePage_ = CodePage::Utf8();
  const HostPaths paths_{codePage_};
  HostFileSystem files_{paths_, std::chrono::milliseconds(100)};
  HostFileSystem patient_{paths_, std::chrono::seconds(20)};
  HostFileSystem endless_{paths_, std::chrono::hours(1)};
};

}  // namespace velkor::testing
