#include "files/spec_names.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "core/function_text.h"
#include "platform/limits.h"

namespace velkor {

namespace {

constexpr size_t kLongestOwnWord = 255;

bool IsPathSeparator(char character) {
  return character == '\\' || character == '/' || character == ':';
}

// No rule of a line takes a word of these for anything but a word.
bool IsWordCharacter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') || character == '_';
}

// From its first character to the end of the path.
std::string_view TailFrom(std::string_view part, std::string_view path) {
  return path.substr(static_cast<size_t>(part.data() - path.data()));
}

}  // namespace

StkFunction* SpecNames::Find(const SpecName& name) {
  if (name.qualified && (name.quoted || Parts(name.file).size() > 1)) {
    return FindInFile(name);
  }
  if (!name.quoted) {
    // Nothing written names nothing, even where a module holds a symbol that is a "_" alone.
    return name.written.empty() ? nullptr
                                : table_.FindBySpecName(name.file, name.function, name.bracketed);
  }
  StkFunction* undefined = name.bracketed ? NamesakesOf(name.function).undefined : nullptr;
  return undefined != nullptr ? undefined : table_.FindBySpecName({}, name.function, true);
}

StkFunction* SpecNames::FindInFile(const SpecName& name) {
  const Namesakes& namesakes = NamesakesOf(name.function);
  StkFunction* found = OnlyOne(namesakes.statics, name.file);
  return found != nullptr ? found : OnlyOne(namesakes.globals, name.file);
}

// A whole path goes before the end of a longer one, and the same letter case before another.
StkFunction* SpecNames::OnlyOne(const Places& places, std::string_view tail) const {
  const Place wanted{nullptr, Parts(tail)};
  const size_t parts = wanted.path.size();
  const auto order = [&](const Place& left, const Place& right) {
    return ComparePaths(left, right, parts) < 0;
  };
  const auto [first, last] = std::equal_range(places.begin(), places.end(), wanted, order);
  Places fitting(first, last);
  const auto keepOnly = [&fitting](auto fits) {
    if (fitting.size() > 1 && std::ranges::any_of(fitting, fits)) {
      std::erase_if(fitting, [&fits](const Place& place) { return !fits(place); });
    }
  };
  keepOnly([&](const Place& place) { return place.path.size() == parts; });
  keepOnly([&](const Place& place) { return place.function->file->name.ends_with(tail); });
  return fitting.size() == 1 ? fitting.front().function : nullptr;
}

SpecNames::BaseClones SpecNames::FindClones(const SpecName& name) {
  BaseClones gone;
  if (name.bracketed || name.written.empty()) {
    return gone;
  }
  for (StkFunction* clone : table_.ClonesOfGone(name.function)) {
    if (name.qualified && !IsInFile(*clone, name)) {
      continue;
    }
    if (gone.clones.empty() || AreOfOneSource(*clone, *gone.clones.front())) {
      gone.clones.push_back(clone);
    } else {
      gone.isAmbiguous = true;
    }
  }
  return gone;
}

std::optional<std::string> SpecNames::GoneBase(
    const StkFunction& clone, const std::unordered_set<const StkFunction*>& among) {
  const std::optional<uint32_t> base = table_.Clones().GoneBaseName(clone);
  if (!base) {
    return std::nullopt;
  }
  const std::string name = QuotedWhereNeeded(table_.NameOf(*base), codePage_);
  const std::string file = QuotedWhereNeeded(Parts(clone.file->name).front(), codePage_);
  std::string qualified = file;
  qualified.append("#").append(name);
  for (const std::string& text : {name, qualified}) {
    const SpecName parts = SpecLineScanner(text, codePage_).TakeName();
    const BaseClones gone = Find(parts) == nullptr ? FindClones(parts) : BaseClones();
    const bool all = std::ranges::all_of(
        gone.clones, [&](const StkFunction* each) { return among.contains(each); });
    if (all && !gone.isAmbiguous && std::ranges::find(gone.clones, &clone) != gone.clones.end()) {
      return text;
    }
  }
  return std::nullopt;
}

bool SpecNames::IsInFile(const StkFunction& function, const SpecName& name) const {
  const Place wanted{nullptr, Parts(name.file)};
  return ComparePaths({nullptr, Parts(function.file->name)}, wanted, wanted.path.size()) == 0;
}

bool SpecNames::IsAmbiguous(const SpecName& name, const StkFunction& found) {
  if (!found.ShownName().empty() && name.function == found.name && !table_.SharesName(found)) {
    return false;
  }
  if (name.qualified) {
    if (name.quoted || Parts(name.file).size() > 1) {
      return false;
    }
    const Places& statics = NamesakesOf(CName(found)).statics;
    const Place wanted{nullptr, Parts(name.file)};
    const auto order = [&](const Place& left, const Place& right) {
      return ComparePaths(left, right, 1) < 0;
    };
    const auto [first, last] = std::equal_range(statics.begin(), statics.end(), wanted, order);
    return last - first > 1;
  }
  if (found.Is(FN_DEFINED) && found.Is(FN_GLOBAL)) {
    return false;
  }
  const bool exact = name.quoted && name.bracketed && !found.Is(FN_DEFINED);
  return !exact && NamesakesOf(CName(found)).Count() > 1;
}

std::optional<std::string> SpecNames::Statement(const StkFunction& function) {
  std::string plain = FunctionSpecName(function, codePage_);
  if (IsStatement(plain, function)) {
    return plain;
  }
  // A C name that begins with "_" is also the symbol of another C name, which a reader prefers.
  if (CName(function).starts_with('_') && function.Is(FN_DEFINED)) {
    std::string bracketed = "[" + plain + "]";
    if (Means(bracketed, function)) {
      return bracketed;
    }
  }
  std::string further = FurtherForm(function, CName(function));
  if (!Means(further, function) && function.Is(FN_DEFINED)) {
    further = FurtherFormWithFile(function, CName(function));
  }
  if (!Means(further, function) && !function.ShownName().empty()) {
    further = FurtherForm(function, function.name);
  }
  return Means(further, function) ? std::optional(std::move(further)) : std::nullopt;
}

std::string SpecNames::Shown(const StkFunction& function) {
  return Statement(function).value_or(FunctionSpecName(function, codePage_));
}

bool SpecNames::IsOwnWord(std::string_view text, const StkFunction& function) const {
  const std::string_view before = function.Is(FN_PLAIN_SYMBOL) ? "" : "_";
  const std::string_view word = WordIn(text, function);
  // A "_" at the start of what has another one before it would be looked for as a symbol.
  return !word.empty() && text.size() <= kLongestOwnWord && function.ShownName().empty() &&
         function.name.size() == before.size() + word.size() && function.name.ends_with(word) &&
         function.name.starts_with(before) && (before.empty() || !word.starts_with('_')) &&
         std::ranges::all_of(word, IsWordCharacter) && !table_.SharesName(function);
}

// The name in the plain form without its brackets or its file; empty where the file is no plain word.
std::string_view SpecNames::WordIn(std::string_view text, const StkFunction& function) {
  if (!function.Is(FN_DEFINED)) {
    return text.substr(1, text.size() - 2);
  }
  if (function.IsStatic()) {
    const size_t mark = text.find('#');
    const std::string_view file = text.substr(0, mark);
    const bool isPlain = !file.empty() && IsWordCharacter(file.front()) &&
                         std::ranges::all_of(file, [](char character) {
                           return IsWordCharacter(character) || character == '.' ||
                                  character == '-';
                         });
    return isPlain ? text.substr(mark + 1) : std::string_view();
  }
  return text;
}

bool SpecNames::Means(std::string_view text, const StkFunction& function) {
  using namespace std::string_view_literals;
  SpecLineScanner scanner(text, codePage_);
  if (text.find_first_of("\0\r\n"sv) != text.npos || scanner.AtComment()) {
    return false;
  }
  const SpecName name = scanner.TakeName();
  // A quote could go together with one further on in the line.
  const bool readable = scanner.AtEnd() && (name.quoted || text.find('"') == text.npos) &&
                        !name.unclosed && !(name.qualified && name.file.empty()) &&
                        name.file.size() <= kMaxPathLength &&
                        name.function.size() <= name.FunctionLimit();
  return readable && Find(name) == &function && !IsAmbiguous(name, function);
}

std::string SpecNames::FurtherForm(const StkFunction& function, std::string_view functionName) {
  if (function.IsStatic()) {
    return FurtherFormWithFile(function, functionName);
  }
  const std::string quoted = Quoted(functionName);
  return function.Is(FN_DEFINED) ? quoted : "[" + quoted + "]";
}

std::string SpecNames::FurtherFormWithFile(const StkFunction& function,
                                           std::string_view functionName) {
  const std::string_view tail = OwnTail(function);
  std::string file = QuotedWhereNeeded(tail, codePage_);
  const std::string name = QuotedWhereNeeded(functionName, codePage_);
  // Without a quote or a folder it would be a name in the plain form.
  if (file == tail && name == functionName && Parts(tail).size() == 1) {
    file = Quoted(tail);
  }
  return file + "#" + name;
}

std::string_view SpecNames::OwnTail(const StkFunction& function) {
  if (function.file == nullptr) {
    return {};
  }
  const Namesakes& namesakes = NamesakesOf(CName(function));
  const Places& places = function.IsStatic() ? namesakes.statics : namesakes.globals;
  const Place wanted{nullptr, Parts(function.file->name)};
  const auto order = [&](const Place& left, const Place& right) {
    return ComparePaths(left, right, SIZE_MAX) < 0;
  };
  const auto place = std::lower_bound(places.begin(), places.end(), wanted, order);
  const bool known = place != places.end() && !order(wanted, *place);
  return TailFrom(wanted.path[known ? place->ownParts - 1 : 0], function.file->name);
}

const SpecNames::Namesakes& SpecNames::NamesakesOf(std::string_view cName) {
  if (const auto known = several_.find(cName); known != several_.end()) {
    return known->second;
  }
  Namesakes namesakes;
  for (StkFunction* function : table_.Namesakes(cName)) {
    if (!function->Is(FN_DEFINED)) {
      namesakes.undefined = function;
    } else if (function->file != nullptr) {
      Places& places = function->IsStatic() ? namesakes.statics : namesakes.globals;
      places.push_back({function, Parts(function->file->name)});
    }
  }
  Arrange(namesakes.statics);
  Arrange(namesakes.globals);
  if (namesakes.Count() > 1) {
    return several_.emplace(cName, std::move(namesakes)).first->second;
  }
  single_ = std::move(namesakes);
  return single_;
}

// Only the neighbours share the longest ends.
void SpecNames::Arrange(Places& places) const {
  std::ranges::stable_sort(places, [this](const Place& left, const Place& right) {
    return ComparePaths(left, right, SIZE_MAX) < 0;
  });
  for (size_t i = 1; i < places.size(); ++i) {
    Place& left = places[i - 1];
    Place& right = places[i];
    size_t shared = 0;
    while (shared < std::min(left.path.size(), right.path.size()) &&
           codePage_.EqualIgnoreCase(left.path[shared], right.path[shared])) {
      ++shared;
    }
    for (Place* place : {&left, &right}) {
      place->ownParts = std::max(place->ownParts, std::min(shared + 1, place->path.size()));
    }
  }
}

std::vector<std::string_view> SpecNames::Parts(std::string_view path) const {
  std::vector<std::string_view> parts;
  size_t start = 0;
  for (size_t i = 0; i < path.size(); i += codePage_.CharLength(path, i)) {
    if (IsPathSeparator(path[i])) {
      parts.push_back(path.substr(start, i - start));
      start = i + 1;
    }
  }
  parts.push_back(path.substr(start));
  std::ranges::reverse(parts);
  return parts;
}

int SpecNames::ComparePaths(const Place& left, const Place& right, size_t parts) const {
  const size_t leftParts = std::min(parts, left.path.size());
  const size_t rightParts = std::min(parts, right.path.size());
  for (size_t i = 0; i < std::min(leftParts, rightParts); ++i) {
    const int order = codePage_.CompareIgnoreCase(left.path[i], right.path[i]);
    if (order != 0) {
      return order;
    }
  }
  return leftParts < rightParts ? -1 : leftParts > rightParts ? 1 : 0;
}

}  // namespace velkor
