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
      std::regex_search(name, std::regex("^(fmt|CLI|rapidjson|boost|toml\\+\\+)/")) &&
      !(folder == "readers" && name.starts_with("toml++/"))) {
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

TEST(Arrows, EveryIncludePointsToAFolderListedAbove) {
  const std::regex include(R"(^\s*#\s*include\s*([<"])([^>"]+)[>"])");
  int seen = 0;
  for (const std::string& folder : kFolders) {
    const fs::path root = fs::path(VELKOR_SOURCE_DIR) / "src" / folder;
    if (!fs::exists(root)) {
      continue;
    }
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
      if (!IsCode(entry.path())) {
        continue;
      }
      std::ifstream file(entry.path());
      std::string line;
      for (int number = 1; std::getline(file, line); ++number) {
        std::smatch match;
        if (std::regex_search(line, match, include)) {
          ++seen;
          EXPECT_EQ(Complaint(folder, match[2], match[1] == "\""), "")
              << entry.path() << ":" << number << ": " << line;
          EXPECT_EQ(InputComplaint(fs::relative(entry.path(), root.parent_path()), match[2]), "")
              << entry.path() << ":" << number << ": " << line;
        }
        if (folder != "platform") {
          EXPECT_FALSE(std::regex_search(line, std::regex(R"(^\s*#\s*if)")))
              << entry.path() << ":" << number << ": only platform/ knows variants of the host";
        }
      }
    }
  }
  EXPECT_GT(seen, 100);
}

// The rooms of the include lines below each room's folder.
std::map<std::string, std::set<std::string>> RoomsIncluded() {
  const std::regex include(R"re(^\s*#\s*include\s*"([^/"]+)/)re");
  std::map<std::string, std::set<std::string>> rooms;
  for (const std::string& folder : kFolders) {
    std::set<std::string>& included = rooms[folder];
    const fs::path root = fs::path(VELKOR_SOURCE_DIR) / "src" / folder;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
      std::ifstream file(entry.path());
      std::smatch match;
      for (std::string line; IsCode(entry.path()) && std::getline(file, line);) {
        if (std::regex_search(line, match, include) && match[1] != folder) {
          included.insert(match[1]);
        }
      }
    }
  }
  return rooms;
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
  EXPECT_EQ(RoomsDrawn(), RoomsIncluded());
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
}

}  // namespace
}  // namespace velkor
