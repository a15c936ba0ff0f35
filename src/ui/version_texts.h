#pragma once

#include <string>

namespace velkor {

// What the program says about itself.
struct VersionTexts {
  std::string productName = "velkor";
  std::string versionSource;  // version word, blank, date in brackets

  // Up to the first blank; empty when there is none.
  std::string VersionWord() const {
    const size_t blank = versionSource.find(' ');
    return blank == std::string::npos ? std::string() : versionSource.substr(0, blank);
  }
};

// Of this build.
VersionTexts ProgramVersion();

}  // namespace velkor
