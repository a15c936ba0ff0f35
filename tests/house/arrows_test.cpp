#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace velkor {
namespace {

namespace fs = std::filesystem;

const std::vector<std::string> kFolders = {"platform", "messages", "core", "files", "readers",
                                           "document", "reports",  "cli",  "ui"};

bool IsCode(const fs::path& path) {
  return path.extension() == ".h" || path.extension() == ".cpp";
}

std::ptrdiff_t Floor(const std::string& folder) {
  const auto found = std::find(kFolders.begin(), kFolders.end(), folder);
  return found == kFolders.end() ? -1 : found - kFolders.begin();
}

bool IsPosix(const std::string& header) {
  static const std::set<std::string> kNames = {
      "unistd.h", "fcntl.h",   "pthread.h", "dirent.h",   "signal.h",  "poll.h",     "iconv.h",
      "dlfcn.h",  "strings.h", "termios.h", "langinfo.h", "xlocale.h", "sys/types.h"};
  return kNames.contains(header) || header.starts_with("sys/");
}

// Whether a file of `folder` may hold the include line `name` (quoted: one of ours).
std::string Complaint(const std::string& folder, const std::string& name, bool quoted) {
  const std::string target = name.substr(0, name.find('/'));
  if (quoted) {
    if (Floor(target) < 0) {
      return "names no folder of src/";
    }
    if (Floor(target) > Floor(folder)) {
      return "points upwards";
    }
    if (folder == "ui" && target == "cli") {
      return "makes one face depend on the other";
    }
    if (folder == "reports" && target == "document") {
      return "makes what is written from a result depend on who computed it";
    }
    return "";
  }
  if (folder != "ui" && std::regex_search(name, std::regex("^Q[A-Z]|^Qt"))) {
    return "brings Qt into the engine";
  }
  if (folder != "platform" && IsPosix(name)) {
    return "asks the operating system outside platform/";
  }
  if (Floor(folder) <= Floor("document") &&
      std::regex_search(name, std::regex("^(fmt|CLI|rapidjson|boost|toml\\+\\+|capstone)/")) &&
      !(folder == "readers" && (name.starts_with("toml++/") || name.starts_with("capstone/")))) {
    return "makes the engine need more than the standard library";
  }
  return "";
}

// The folder of one input belongs to it alone; what opens an input chooses among them.
std::string InputComplaint(const std::string& file, const std::string& name) {
  static const std::regex ofInput("readers/([^/]+)/.*");
  std::smatch input;
  const bool mayKnow = file == "readers/open_input.cpp" ||
                       !std::regex_match(name, input, ofInput) ||
                       file.starts_with("readers/" + input[1].str() + "/");
  return mayKnow ? "" : "knows the format of an input";
}

// What a room keeps to itself stands in a folder of its own.
std::string DetailComplaint(const std::string& folder, const std::string& name) {
  static const std::regex ofRoom("([^/]+)/detail/.*");
  std::smatch room;
  const bool mayKnow = !std::regex_match(name, room, ofRoom) || room[1] == folder;
  return mayKnow ? "" : "knows what another room keeps to itself";
}

// An include line below src/.
struct Include {
  std::string folder;
  std::string file;  // below src/
  std::string name;
  bool quoted;
};

// All of them; a line that knows variants of the host outside platform/ fails the test.
std::vector<Include> Includes() {
  const std::regex include(R"(^\s*#\s*include\s*([<"])([^>"]+)[>"])");
  const std::regex condition(R"(^\s*#\s*if)");
  const fs::path source = fs::path(VELKOR_SOURCE_DIR) / "src";
  std::vector<Include> includes;
  for (const std::string& folder : kFolders) {
    for (const auto& entry : fs::recursive_directory_iterator(source / folder)) {
      std::ifstream stream(entry.path());
      const std::string file = fs::relative(entry.path(), source);
      for (std::string line; IsCode(entry.path()) && std::getline(stream, line);) {
        std::smatch match;
        if (std::regex_search(line, match, include)) {
          includes.push_back({folder, file, match[2], match[1] == "\""});
        }
        EXPECT_FALSE(folder != "platform" && std::regex_search(line, condition)) << file << line;
      }
    }
  }
  return includes;
}

TEST(Arrows, EveryIncludePointsToAFolderListedAbove) {
  const std::vector<Include> includes = Includes();
  EXPECT_GT(includes.size(), 100U);
  for (const Include& each : includes) {
    EXPECT_EQ(Complaint(each.folder, each.name, each.quoted), "") << each.file << each.name;
    EXPECT_EQ(InputComplaint(each.file, each.name), "") << each.file << each.name;
    EXPECT_EQ(DetailComplaint(each.folder, each.name), "") << each.file << each.name;
  }
}

// A header of the core that no other room includes is nobody else's concern.
TEST(Arrows, WhatOnlyTheCoreIncludesStandsInItsDetail) {
  std::set<std::string> wanted;
  for (const Include& each : Includes()) {
    if (each.folder != "core") {
      wanted.insert(each.name);
    }
  }
  for (const auto& entry : fs::directory_iterator(fs::path(VELKOR_SOURCE_DIR) / "src/core")) {
    if (entry.path().extension() == ".h") {
      EXPECT_TRUE(wanted.contains("core/" + entry.path().filename().string())) << entry.path();
    }
  }
}

// "cli -> core document": each such line, and each name of a room alone on one.
std::map<std::string, std::set<std::string>> RoomsDrawn() {
  std::map<std::string, std::set<std::string>> rooms;
  std::ifstream file(fs::path(VELKOR_SOURCE_DIR) / "docs/architecture.md");
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string room;
    std::string arrow;
    words >> room >> arrow;
    if (Floor(room) >= 0 && (arrow.empty() || arrow == "->")) {
      std::set<std::string>& drawn = rooms[room];
      for (std::string word; words >> word;) {
        drawn.insert(word);
      }
    }
  }
  return rooms;
}

TEST(Arrows, TheDrawingOfTheRoomsIsWhatTheIncludesSay) {
  std::map<std::string, std::set<std::string>> included;
  for (const Include& each : Includes()) {
    std::set<std::string>& rooms = included[each.folder];
    const std::string room = each.name.substr(0, each.name.find('/'));
    if (each.quoted && room != each.folder) {
      rooms.insert(room);
    }
  }
  EXPECT_EQ(RoomsDrawn(), included);
}

TEST(Arrows, TheCheckFindsWrongOnes) {
  EXPECT_NE(Complaint("core", "files/paths.h", true), "");
  EXPECT_NE(Complaint("ui", "cli/analyze.h", true), "");
  EXPECT_NE(Complaint("reports", "document/document.h", true), "");
  EXPECT_NE(Complaint("document", "reports/text_output.h", true), "");
  EXPECT_NE(Complaint("document", "QString", false), "");
  EXPECT_NE(Complaint("files", "unistd.h", false), "");
  EXPECT_NE(Complaint("core", "fmt/format.h", false), "");
  EXPECT_NE(Complaint("files", "toml++/toml.h", false), "");
  EXPECT_EQ(Complaint("readers", "toml++/toml.h", false), "");
  EXPECT_EQ(Complaint("files", "core/function.h", true), "");
  EXPECT_EQ(Complaint("ui", "QString", false), "");
  EXPECT_NE(InputComplaint("document/document.h", "readers/tarn/project.h"), "");
  EXPECT_NE(InputComplaint("readers/program_input.h", "readers/tarn/project.h"), "");
  EXPECT_EQ(InputComplaint("readers/tarn/project.cpp", "readers/tarn/project.h"), "");
  EXPECT_NE(DetailComplaint("files", "core/detail/components.h"), "");
  EXPECT_EQ(DetailComplaint("core", "core/detail/components.h"), "");
}

}  // namespace
}  // namespace velkor
