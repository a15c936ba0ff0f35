#include <algorithm>
#include <string>
#include <vector>

#include "files/paths.h"
#include "fuzz/fuzz_host.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/fuzzers.h"
#include "fuzz/invariants.h"
#include "fuzz/require.h"
#include "platform/profile_file.h"
#include "readers/tarn/module_location.h"
#include "readers/tarn/project.h"
#include "readers/tarn/spec_sources.h"

namespace velkor::testing {

namespace {

constexpr const char* kProjectPath = "C:\\p\\app.prj";
constexpr const char* kFolder = "C:\\p\\out";  // the one that exists

std::string Trimmed(const std::string& text) {
  const size_t first = text.find_first_not_of(" \t\v\f");
  const size_t last = text.find_last_not_of(" \t\v\f");
  return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

std::string Unquoted(const std::string& text) {
  const bool quoted = text.size() >= 2 && (text.front() == '"' || text.front() == '\'') &&
                      text.back() == text.front();
  return quoted ? text.substr(1, text.size() - 2) : text;
}

// An INI file as a list of its lines, searched from the front at each question.
class LiteralProfile {
 public:
  LiteralProfile(std::string_view text, const CodePage& codePage) : codePage_(codePage) {
    std::string line;
    if (text.starts_with("\xEF\xBB\xBF")) {
      text.remove_prefix(3);
    }
    for (const char character : std::string(text) + "\n") {
      if (character != '\n' && character != '\r') {
        line += character;
        continue;
      }
      Take(Trimmed(line));
      line.clear();
    }
  }

  std::string Value(const std::string& section, const std::string& key) const {
    for (const Section& candidate : sections_) {
      if (codePage_.EqualIgnoreCase(candidate.name, section)) {
        for (const auto& [name, value] : candidate.entries) {
          if (codePage_.EqualIgnoreCase(name, key)) {
            return value.substr(0, codePage_.CutLength(value, 5119));
          }
        }
        return "";
      }
    }
    return "";
  }

  struct Section {
    std::string name;
    std::vector<std::pair<std::string, std::string>> entries;
  };
  const std::vector<Section>& Sections() const { return sections_; }

 private:
  void Take(const std::string& line) {
    if (line.empty() || line.front() == ';') {
      return;
    }
    const size_t equals = line.find('=');
    if (line.front() == '[') {
      size_t end = 0;
      for (size_t i = 0; i < line.size(); i += codePage_.CharLength(line, i)) {
        end = line[i] == ']' ? i : end;
      }
      if (end > 0) {
        sections_.push_back({Trimmed(line.substr(1, end - 1)), {}});
      }
    } else if (equals != std::string::npos && !sections_.empty()) {
      sections_.back().entries.emplace_back(Trimmed(line.substr(0, equals)),
                                            Unquoted(Trimmed(line.substr(equals + 1))));
    }
  }

  const CodePage& codePage_;
  std::vector<Section> sections_;
};

void CheckLookups(const LiteralProfile& literal, const ProfileFile& profile) {
  for (const LiteralProfile::Section& section : literal.Sections()) {
    for (const auto& [key, value] : section.entries) {
      RequireEqual(profile.GetString(section.name, key), literal.Value(section.name, key),
                   "a key has its first value");
    }
  }
}

// Each C source has a module of its own, until the first gap; where it lies, tables say.
void CheckProject(const StkProject& project, const LiteralProfile& literal, FuzzHost& host) {
  Require(!project.ProjectDirectory().empty(), "a project has a directory");
  size_t sources = 0;
  while (!literal.Value("SrcFile", "Source" + std::to_string(sources + 1)).empty()) {
    ++sources;
  }
  const std::vector<std::string> modules(project.Modules().begin(), project.Modules().end());
  Require(modules.size() <= std::min<size_t>(sources, StkProjectFile::kMaxSources),
          "a project has a module at most for each source");
  for (size_t i = 0; i < modules.size(); ++i) {
    Require(IsAbsolute(modules[i], host.codePage), "a module has a place", modules[i]);
    Require(std::none_of(modules.begin(), modules.begin() + static_cast<std::ptrdiff_t>(i),
                         [&](const std::string& earlier) {
                           return host.codePage.EqualIgnoreCase(earlier, modules[i]);
                         }),
            "a module is read once", modules[i]);
  }
  RequireEqual(project.SystemFilePath(), "C:\\p\\app.psg", "the stk system file");
  const auto specSources = SpecSourcesOf(project, {}, host.host, host.reporter);
  RequireEqual(specSources.size(), 1, "no table applies before a module was read");
}

}  // namespace

void FuzzProject(std::string_view bytes) {
  FuzzInput input(bytes);
  const CodePage& codePage = input.Page();
  const uint32_t choices = input.Byte();
  const std::string_view text = input.Rest();
  FuzzHost host(codePage);
  host.files.SetReadLimit((choices & 4) != 0 ? 1 + choices % 7 : SIZE_MAX);
  host.files.AddDirectory(kFolder);
  host.files.Put(kProjectPath, std::string(text));
  host.reporter.SetOpenedFromCommandLine((choices & 1) != 0);

  const LiteralProfile literal(text, codePage);
  CheckLookups(literal, ProfileFile(codePage, std::string(text)));
  StkProject project(host.host, host.reporter);
  const bool loaded = project.Load(kProjectPath);
  RequireEqual(loaded, !literal.Value("ProjectManager", "Path").empty(),
               "a project that states a directory is one");
  RequireEqual(host.boxes.boxes.size(), loaded ? 0 : 1, "a failure is told once");
  if (loaded) {
    CheckProject(project, literal, host);
  }
  host.CheckAllMessages(IsWhole(text, codePage));
}

}  // namespace velkor::testing
