#include <algorithm>
#include <string>
#include <vector>

#include "files/paths.h"
#include "fuzz/fuzz_host.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/fuzzers.h"
#include "fuzz/require.h"
#include "platform/path_text.h"

namespace velkor::testing {

namespace {

bool IsBetween(char byte, unsigned first, unsigned last) {
  const unsigned value = static_cast<unsigned char>(byte);
  return value >= first && value <= last;
}

// The text with every byte of a double-byte character made an "x", so that what is left of "\",
// "/", ":" and "." are those characters themselves. (No other set puts them into a character.)
std::string Plain(std::string_view text, const CodePage& codePage) {
  std::string plain(text);
  if (codePage.GetKind() != CodePage::Kind::kShiftJis) {
    return plain;
  }
  for (size_t i = 0; i + 1 < plain.size(); ++i) {
    const bool lead = IsBetween(plain[i], 0x81, 0x9F) || IsBetween(plain[i], 0xE0, 0xFC);
    const bool trail = IsBetween(plain[i + 1], 0x40, 0x7E) || IsBetween(plain[i + 1], 0x80, 0xFC);
    if (lead && trail) {
      plain.replace(i, 2, "xx");
      ++i;
    }
  }
  return plain;
}

void CheckParts(std::string_view path, const CodePage& codePage) {
  const std::string plain = Plain(path, codePage);
  const size_t separator = plain.find_last_of("\\/:");
  const size_t nameStart = separator == std::string::npos ? 0 : separator + 1;
  const size_t dot = plain.rfind('.');
  const size_t extension = dot != std::string::npos && dot > nameStart ? dot : path.size();

  RequireEqual(DirectoryPart(path, codePage), path.substr(0, nameStart), "a directory part");
  RequireEqual(FileNamePart(path, codePage), path.substr(nameStart), "a file-name part");
  RequireEqual(Extension(path, codePage), path.substr(extension), "an extension");
  RequireEqual(BaseName(path, codePage), path.substr(nameStart, extension - nameStart),
               "a base name");
  RequireEqual(ReplaceExtension(path, ".psg", codePage),
               std::string(path.substr(0, extension)) + ".psg", "another extension");
  const size_t second = codePage.CharLength(path, 0);
  RequireEqual(IsAbsolute(path, codePage),
               plain.starts_with('\\') || plain.starts_with('/') ||
                   plain.substr(std::min(second, plain.size())).starts_with(':'),
               "an absolute path", path);
}

void CheckJoin(std::string_view directory, std::string_view name, const CodePage& codePage) {
  const std::string joined = Join(directory, name, codePage);
  const bool bare = directory.empty() || Plain(directory, codePage).ends_with('\\');
  RequireEqual(joined, std::string(directory) + (bare ? "" : "\\") + std::string(name), "a join");
}

// A resolved path is short, has no steps left and resolves to itself.
void CheckFullPath(std::string_view path, const FuzzHost& host) {
  const std::optional<std::string> full = host.paths.FullPathName(path);
  if (!full) {
    return;
  }
  Require(full->size() < 300, "a resolved path has a limit", *full);
  const PathText parts = PathText::Split(*full, host.codePage);
  Require(!parts.root.empty(), "a resolved path has a root", *full);
  for (size_t i = parts.fixed; i < parts.components.size(); ++i) {
    const std::string& component = parts.components[i];
    Require(component != "." && component != "..", "a resolved path has no steps", *full);
  }
  RequireEqual(host.paths.FullPathName(*full).value_or(""), *full, "resolving twice is once");
}

// Order and equality of names, of which every sorted list and lookup is made.
void CheckComparison(const std::string& a, const std::string& b, const CodePage& page) {
  Require((page.Compare(a, b) < 0) == (page.Compare(b, a) > 0), "an order", a);
  Require((page.Compare(a, b) == 0) == (a == b), "only equal texts are equal", a);
  Require((page.CompareIgnoreCase(a, b) < 0) == (page.CompareIgnoreCase(b, a) > 0),
          "an order ignoring case", a);
  Require(!page.EqualIgnoreCase(a, b) || page.HashIgnoreCase(a) == page.HashIgnoreCase(b),
          "equal texts have one hash", a);
}

void CheckCharacters(std::string_view text, const CodePage& codePage) {
  std::vector<size_t> borders = {0};
  while (borders.back() < text.size()) {
    const size_t length = codePage.CharLength(text, borders.back());
    Require(length > 0 && length <= text.size() - borders.back(), "a character lies in the text");
    borders.push_back(borders.back() + length);
  }
  RequireEqual(codePage.CharLength(text, text.size()), 0, "no character behind the end");
  for (size_t limit = 0; limit <= std::min<size_t>(text.size(), 64); ++limit) {
    const auto next = std::upper_bound(borders.begin(), borders.end(), limit);
    RequireEqual(codePage.CutLength(text, limit), *(next - 1), "a cut is the last border", text);
  }
  const std::string shown = codePage.ToUtf8(text);
  RequireEqual(CodePage::Utf8().ToUtf8(shown), shown, "what is shown is UTF-8");
  const std::optional<std::string> back = codePage.FromUtf8(shown);
  Require(!back || codePage.ToUtf8(*back) == shown, "what is converted back shows the same", text);
}

}  // namespace

void FuzzPath(std::string_view bytes) {
  FuzzInput input(bytes);
  const CodePage& codePage = input.Page();
  const std::string first(input.Line());
  const std::string second(input.Line());
  FuzzHost host(codePage);
  for (const std::string& path : {first, second}) {
    CheckParts(path, codePage);
    CheckFullPath(path, host);
    CheckCharacters(path, codePage);
  }
  CheckJoin(first, second, codePage);
  CheckComparison(first, second, codePage);
  CheckComparison(first, first, codePage);
}

}  // namespace velkor::testing
