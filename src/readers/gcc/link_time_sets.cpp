#include "readers/gcc/link_time_sets.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <utility>

#include "readers/gcc/text_ends.h"

namespace velkor {
namespace {

constexpr std::string_view kPartition = ".ltrans";
constexpr std::string_view kWholeProgram = ".lto.o-";

// One link of an output: what its files have in common.
struct Link {
  std::string output;
  std::string set;
};

// The beginning of the first line: graph: { title: "TITLE"
std::string TitleOf(FileSystem& files, const std::string& path) {
  const OpenResult<InputFile> opened = files.OpenForRead(path);
  std::array<char, 4096> buffer;
  size_t size = 0;
  if (opened.file) {
    while (const size_t count =
               size < buffer.size() ? opened.file->Read(&buffer[size], buffer.size() - size) : 0) {
      size += count;
    }
  }
  std::string_view line(buffer.data(), size);
  line = line.substr(0, line.find('\n'));
  return TakePrefix(line, "graph: { title: \"") ? std::string(line) : std::string();
}

std::optional<Link> LinkOf(FileSystem& files, const std::string& path) {
  std::string_view stem = path;
  if (TakeSuffix(stem, ".ltrans.ci")) {
    const size_t digits = stem.find_last_not_of("0123456789");
    stem = stem.substr(0, digits == std::string_view::npos ? 0 : digits + 1);
    if (!TakeSuffix(stem, kPartition)) {
      return std::nullopt;
    }
    const std::string title = TitleOf(files, path);
    if (title.empty()) {
      return std::nullopt;  // of which link it is cannot be told: it stays, and is found broken
    }
    return Link{std::string(stem), title.substr(0, title.rfind(kPartition))};
  }
  const size_t mark = stem.rfind(kWholeProgram);
  if (!TakeSuffix(stem, ".lto.ci") || mark == std::string_view::npos) {
    return std::nullopt;
  }
  return Link{std::string(stem.substr(0, mark)), path};
}

}  // namespace

bool IsLinkTimeGraph(std::string_view path) {
  return path.ends_with(".ltrans.ci") ||
         (path.ends_with(".lto.ci") && path.find(kWholeProgram) != std::string_view::npos);
}

LinkTimeSets WithoutOldLinks(FileSystem& files, const std::vector<std::string>& callGraphs) {
  std::map<std::string, std::map<std::string, int64_t>> timeOfSets;  // by output, then by set
  std::vector<std::optional<Link>> links;
  for (const std::string& path : callGraphs) {
    std::optional<Link> link = IsLinkTimeGraph(path) ? LinkOf(files, path) : std::nullopt;
    if (link) {
      int64_t& time = timeOfSets[link->output].try_emplace(link->set, INT64_MIN).first->second;
      time = std::max(time, files.ModifiedAt(path).value_or(INT64_MIN));
    }
    links.push_back(std::move(link));
  }
  std::map<std::string, std::string> newest;  // set by output
  for (const auto& [output, sets] : timeOfSets) {
    const auto latest = std::ranges::max_element(
        sets, {}, [](const auto& set) { return std::pair(set.second, set.first); });
    newest[output] = latest->first;
  }
  LinkTimeSets result;
  for (size_t i = 0; i < callGraphs.size(); ++i) {
    if (links[i] && newest[links[i]->output] != links[i]->set) {
      ++result.oldCount;
    } else {
      result.kept.push_back(callGraphs[i]);
    }
  }
  return result;
}

}  // namespace velkor
