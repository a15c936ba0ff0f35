#pragma once

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

#include "platform/temporary_name.h"

namespace velkor::testing {

// A new folder of the host that is the current one until it is removed again.
class TemporaryFolder {
 public:
  TemporaryFolder() : before_(std::filesystem::current_path()) {
    const auto folder =
        std::filesystem::canonical(std::filesystem::temp_directory_path()) / ("velkor" + TemporaryTail());
    EXPECT_TRUE(std::filesystem::create_directory(folder));
    path_ = folder.string();
    std::filesystem::current_path(path_);
  }
  ~TemporaryFolder() {
    std::filesystem::current_path(before_);
    std::filesystem::remove_all(path_);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::string& Path() const { return path_; }
  std::string operator/(const std::string& name) const { return (std::filesystem::path(path_) / name).string(); }
  void Put(const std::string& name, const std::string& bytes) const {
    std::filesystem::create_directories(std::filesystem::path(*this / name).parent_path());
    std::ofstream(*this / name, std::ios::binary) << bytes;
  }
  std::string Get(const std::string& name) const {
    std::ifstream file(*this / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

 private:
  const std::filesystem::path before_;
  std::string path_;
};

}  // namespace velkor::testing
