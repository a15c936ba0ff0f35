#include "readers/gcc/linked_program.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace velkor {
namespace {

constexpr uint64_t kMostVectors = 1024;

}  // namespace

LinkedProgram::LinkedProgram(WholeFile file)
    : file_(std::move(file)),
      elf_(file_.Bytes()),
      facts_(elf_),
      frames_(elf_),
      code_(elf_, facts_, frames_) {
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
  const bool mayBeThumb = elf_.Machine() == ELF_ARM;
  const auto codeAddress = [&](uint64_t word) { return mayBeThumb ? word & ~uint64_t{1} : word; };
  std::vector<Entry> entries;
  if (Entry entry{NamesAt(codeAddress(elf_.Entry())), false}; !entry.names.empty()) {
    entries.push_back(std::move(entry));
  }
  const Table table = FindVectors(vectors);
  const size_t width = elf_.AddressSize();
  ByteReader words(table.bytes, elf_.Order());
  words.Skip(std::min(width, table.bytes.size()));  // the first stack pointer
  for (uint64_t i = 1; i < kMostVectors && !words.AtEnd(); ++i) {
    const uint64_t word = words.Unsigned(width);
    Entry entry{NamesAt(codeAddress(word)), true};
    if (!entry.names.empty()) {
      entries.push_back(std::move(entry));
    } else if (word != 0 && table.endsAtOther) {
      break;
    }
  }
  return entries;
}

LinkedProgram::Table LinkedProgram::FindVectors(std::string_view vectors) const {
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

std::optional<uint64_t> LinkedProgram::ObjectSize(std::string_view name) const {
  const ElfSymbol* symbol = FindSymbol(name);
  return symbol != nullptr ? std::optional(symbol->size) : std::nullopt;
}

std::optional<uint64_t> LinkedProgram::SymbolValue(std::string_view name) const {
  const ElfSymbol* symbol = FindSymbol(name);
  return symbol != nullptr ? std::optional(symbol->value) : std::nullopt;
}

}  // namespace velkor
