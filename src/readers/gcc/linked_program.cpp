#include "readers/gcc/linked_program.h"

#include <algorithm>
#include <charconv>
#include <numeric>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace velkor {
namespace {

constexpr uint64_t kMostVectors = 1024;

}  // namespace

LinkedProgram::LinkedProgram(WholeFile file, const std::stop_token& unwanted)
    : file_(std::move(file)),
      elf_(file_.Bytes()),
      facts_(elf_),
      frames_(elf_),
      code_(elf_, facts_, frames_, unwanted) {
  const std::vector<ObjectFunction>& functions = facts_.Functions();
  byName_.resize(functions.size());
  std::iota(byName_.begin(), byName_.end(), 0U);
  byAddress_ = byName_;
  std::ranges::stable_sort(byName_, {}, [&](uint32_t i) { return functions[i].name; });
  std::ranges::stable_sort(byAddress_, {}, [&](uint32_t i) { return functions[i].address; });
  hasLocalFunctions_ = std::ranges::any_of(functions, [](const ObjectFunction& function) {
    return function.reach == FunctionReach::kLocal;
  });
}

BinaryFaults LinkedProgram::Faults() const {
  BinaryFaults faults = elf_.Faults();
  faults.Add(facts_.Faults());
  faults.Add(frames_.Faults());
  return faults;
}

std::vector<uint32_t> LinkedProgram::Named(std::string_view name) const {
  const auto nameOf = [&](uint32_t i) { return facts_.Functions()[i].name; };
  const auto first = std::ranges::lower_bound(byName_, name, {}, nameOf);
  auto end = first;
  while (end != byName_.end() && nameOf(*end) == name) {
    ++end;
  }
  return {first, end};
}

UnitRecording::Reach LinkedProgram::ReachOf(std::string_view name) const {
  using Reach = UnitRecording::Reach;
  size_t local = 0;
  Reach others = Reach::kWeak;
  const std::vector<uint32_t> named = Named(name);
  for (const uint32_t i : named) {
    const FunctionReach reach = facts_.Functions()[i].reach;
    local += reach == FunctionReach::kLocal ? 1 : 0;
    others = reach == FunctionReach::kGlobal ? Reach::kGlobal : others;
  }
  if (named.empty() || (local != 0 && local != named.size())) {
    return Reach::kUnknown;
  }
  return local != 0 ? Reach::kLocal : others;
}

std::vector<std::string_view> LinkedProgram::AliasesOf(std::string_view name) const {
  const std::vector<uint32_t> named = Named(name);
  std::vector<std::string_view> aliases;
  if (named.size() == 1) {
    aliases = NamesAt(facts_.Functions()[named.front()].address);
    std::erase(aliases, name);
  }
  return aliases;
}

uint64_t LinkedProgram::FrameBytesOf(std::string_view name) const {
  const std::vector<uint32_t> named = Named(name);
  if (named.size() != 1) {
    return 0;
  }
  const FunctionFrame* frame = frames_.Find(0, facts_.Functions()[named.front()].address);
  return frame != nullptr ? frame->bytes : 0;
}

uint32_t LinkedProgram::CodeNamed(std::string_view name, std::string_view source) const {
  uint32_t found = ProgramCode::kNone;
  int rank = 0;
  bool isOne = true;
  for (const uint32_t i : Named(name)) {
    const ObjectFunction& function = facts_.Functions()[i];
    const bool isOfSource = !source.empty() && function.file == source;
    const int own = function.reach != FunctionReach::kLocal ? 3 : isOfSource ? 2 : 1;
    const uint32_t code = code_.Find(function.address);
    if (own > rank) {
      rank = own;
      found = code;
      isOne = true;
    } else if (own == rank) {
      isOne = isOne && code == found;
    }
  }
  return isOne ? found : ProgramCode::kNone;
}

std::vector<std::string_view> LinkedProgram::NamesAt(uint64_t address) const {
  const std::vector<ObjectFunction>& functions = facts_.Functions();
  const auto addressOf = [&](uint32_t i) { return functions[i].address; };
  std::vector<std::string_view> names;
  auto next = std::ranges::lower_bound(byAddress_, address, {}, addressOf);
  for (; next != byAddress_.end() && addressOf(*next) == address; ++next) {
    names.push_back(functions[*next].name);
  }
  return names;
}

std::vector<LinkedProgram::Entry> LinkedProgram::Entries(std::string_view vectors) const {
  std::vector<Entry> entries = EntriesByName();
  if (Entry entry{NamesAt(CodeAddress(elf_.Entry())), 0}; !entry.names.empty()) {
    entries.push_back(std::move(entry));
  }
  const Table table = FindVectors(vectors);
  const size_t width = elf_.AddressSize();
  ByteReader words(table.bytes, elf_.Order());
  words.Skip(std::min(width, table.bytes.size()));  // the first stack pointer
  for (uint64_t i = 1; i < kMostVectors && !words.AtEnd(); ++i) {
    const uint64_t word = words.Unsigned(width);
    if (word == 0) {
      continue;
    }
    Entry entry{NamesAt(CodeAddress(word)), static_cast<uint32_t>(i)};
    if (!entry.names.empty()) {
      entries.push_back(std::move(entry));
    } else if (table.endsAtOther) {
      break;
    }
  }
  return entries;
}

// On AVR the table holds jumps, to functions of known names.
std::vector<LinkedProgram::Entry> LinkedProgram::EntriesByName() const {
  constexpr std::string_view kPrefix = "__vector_";
  std::vector<Entry> entries;
  for (const ObjectFunction& function : facts_.Functions()) {
    uint32_t vector = 0;
    const std::string_view name = function.name;
    if (!HasPointerVectors() && name.starts_with(kPrefix) &&
        std::from_chars(name.data() + kPrefix.size(), name.data() + name.size(), vector).ptr ==
            name.data() + name.size() &&
        vector != 0) {
      entries.push_back({{name}, vector});
    }
  }
  std::ranges::stable_sort(entries, {}, &Entry::vector);
  return entries;
}

LinkedProgram::Table LinkedProgram::FindVectors(std::string_view vectors) const {
  if (!HasPointerVectors()) {
    return {};
  }
  if (!vectors.empty()) {
    const ElfSymbol* symbol = FindSymbol(vectors);
    if (symbol == nullptr) {
      return {};
    }
    const uint64_t size = symbol->size != 0 ? symbol->size : kMostVectors * elf_.AddressSize();
    return {BytesAt(symbol->value, size), symbol->size == 0};
  }
  for (const std::string_view name : kVectorSections) {
    if (const ElfSection* section = elf_.FindSection(name)) {
      return {section->bytes, false};
    }
  }
  if (elf_.Machine() != ELF_ARM) {
    return {};
  }
  const ElfSegment* lowest = nullptr;
  for (const ElfSegment& segment : elf_.Segments()) {
    if (segment.IsLoaded() && !segment.bytes.empty() &&
        (lowest == nullptr || segment.address < lowest->address)) {
      lowest = &segment;
    }
  }
  if (lowest == nullptr) {
    return {};
  }
  ByteReader words(lowest->bytes, elf_.Order());
  words.Word();
  const bool isTable = words.Word() == elf_.Entry() && !words.Failed();
  return isTable ? Table{lowest->bytes, true} : Table{};
}

// Of the file's bytes that are loaded there, as many as there are.
std::string_view LinkedProgram::BytesAt(uint64_t address, uint64_t size) const {
  for (const ElfSection& section : elf_.Sections()) {
    const uint64_t offset = address - section.address;
    if (section.IsLoaded() && address >= section.address && offset < section.bytes.size()) {
      return section.bytes.substr(static_cast<size_t>(offset), static_cast<size_t>(size));
    }
  }
  return {};
}

const ElfSymbol* LinkedProgram::FindSymbol(std::string_view name) const {
  const auto found = std::ranges::find_if(elf_.Symbols(), [&](const ElfSymbol& symbol) {
    return symbol.name == name && symbol.section != ElfSymbol::kUndefined;
  });
  return found == elf_.Symbols().end() ? nullptr : &*found;
}

std::vector<ProgramFacts::Symbol> LinkedProgram::Symbols() const {
  std::vector<const ElfSymbol*> named;
  for (const ElfSymbol& symbol : elf_.Symbols()) {
    const bool isData =
        symbol.type == ElfSymbolType::kNone || symbol.type == ElfSymbolType::kObject;
    if (isData && symbol.section != ElfSymbol::kUndefined && !symbol.name.empty() &&
        !symbol.name.starts_with('$') && !symbol.name.starts_with('.')) {
      named.push_back(&symbol);
    }
  }
  std::ranges::stable_sort(named, {}, [](const ElfSymbol* symbol) {
    return std::tuple(symbol->name, symbol->binding == ElfBinding::kLocal, symbol->size);
  });
  std::vector<ProgramFacts::Symbol> symbols;
  for (const ElfSymbol* symbol : named) {
    if (symbols.empty() || symbols.back().name != symbol->name) {
      symbols.push_back({std::string(symbol->name), symbol->value, symbol->size,
                         symbol->section == ElfSymbol::kAbsolute});
    }
  }
  return symbols;
}

std::optional<uint64_t> LinkedProgram::FirstWritable() const {
  std::optional<uint64_t> first;
  for (const ElfSection& section : elf_.Sections()) {
    if (section.IsLoaded() && section.IsWritable() && section.size != 0) {
      first = std::min(first.value_or(section.address), section.address);
    }
  }
  return first;
}

LinkedProgram::Pointers LinkedProgram::PointersIn(std::string_view object) const {
  Pointers pointers;
  const ElfSymbol* symbol = FindSymbol(object);
  if (symbol == nullptr) {
    return pointers;
  }
  std::unordered_map<uint64_t, std::string_view> objects;
  for (const ElfSymbol& each : elf_.Symbols()) {
    if (each.type == ElfSymbolType::kObject && each.section != ElfSymbol::kUndefined) {
      objects.emplace(each.value, each.name);
    }
  }
  const std::string_view bytes = BytesAt(symbol->value, symbol->size);
  ByteReader words(bytes, elf_.Order());
  for (size_t i = 0; i < bytes.size() / elf_.AddressSize(); ++i) {
    const uint64_t word = words.Unsigned(elf_.AddressSize());
    if (std::vector<std::string_view> names = NamesAt(CodeAddress(word)); !names.empty()) {
      pointers.functions.push_back(std::move(names));
    } else if (const auto found = objects.find(word); found != objects.end()) {
      pointers.objects.push_back(found->second);
    }
  }
  return pointers;
}

std::vector<std::string_view> LinkedProgram::ObjectsThatBegin(std::string_view prefix) const {
  std::vector<std::string_view> names;
  for (const ElfSymbol& symbol : elf_.Symbols()) {
    if (symbol.type == ElfSymbolType::kObject && symbol.section != ElfSymbol::kUndefined &&
        symbol.name.starts_with(prefix)) {
      names.push_back(symbol.name);
    }
  }
  std::ranges::sort(names);
  return names;
}

}  // namespace velkor
