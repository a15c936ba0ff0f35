#include "readers/gcc/object_facts.h"

#include <algorithm>
#include <optional>

#include "readers/gcc/address_relocation.h"

namespace velkor {
namespace {

std::pair<uint32_t, uint64_t> CodePlace(const ObjectFunction& function) {
  return {function.section, function.address};
}

FunctionReach ReachOf(const ElfSymbol& symbol) {
  switch (symbol.binding) {
    case ElfBinding::kLocal:
      return FunctionReach::kLocal;
    case ElfBinding::kWeak:
      return FunctionReach::kWeak;
    default:
      return FunctionReach::kGlobal;
  }
}

}  // namespace

ObjectFacts::ObjectFacts(const ElfFile& elf)
    : elf_(elf), knowsCalls_(KnowsBranchesOf(elf.Machine())) {
  CollectFunctions();
  for (uint32_t i = 0; i < elf.Sections().size(); ++i) {
    const ElfSection& section = elf.Sections()[i];
    hasLinkTimeCode_ = hasLinkTimeCode_ || section.name.starts_with(".gnu.lto_");
    const bool isCode = section.HasCode();
    if (elf.IsRelocatable() && (isCode ? knowsCalls_ : HoldsUsedAddresses(section))) {
      CollectRelocations(i);
    }
  }
  ReadCompiler();
}

bool ObjectFacts::IsFunction(const ElfSymbol& symbol) const {
  if (symbol.section == ElfSymbol::kUndefined || symbol.section >= elf_.Sections().size() ||
      symbol.name.empty()) {
    return false;
  }
  if (symbol.IsFunction()) {
    return true;
  }
  return symbol.type == ElfSymbolType::kNone && symbol.binding != ElfBinding::kLocal &&
         elf_.Sections()[symbol.section].HasCode();
}

uint64_t ObjectFacts::AddressOf(const ElfSymbol& symbol) const {
  const bool mayBeThumb = elf_.Machine() == ELF_ARM && symbol.IsFunction();
  return mayBeThumb ? symbol.value & ~uint64_t{1} : symbol.value;
}

void ObjectFacts::CollectFunctions() {
  std::string_view file;
  for (const ElfSymbol& symbol : elf_.Symbols()) {
    if (symbol.type == ElfSymbolType::kFile) {
      file = symbol.name;
    }
    if (IsFunction(symbol)) {
      const bool isLocal = symbol.binding == ElfBinding::kLocal;
      functions_.push_back({symbol.name, isLocal ? file : std::string_view(), AddressOf(symbol),
                            symbol.size, symbol.section, ReachOf(symbol), symbol.IsFunction()});
    }
  }
  std::ranges::stable_sort(functions_, {}, CodePlace);
  for (uint32_t i = 0; i < functions_.size(); ++i) {
    byName_.emplace(functions_[i].name, i);
  }
}

uint32_t ObjectFacts::Find(std::string_view name) const {
  const auto found = byName_.find(name);
  return found == byName_.end() ? ObjectCall::kNoFunction : found->second;
}

uint32_t ObjectFacts::FirstAlias(uint32_t function) const {
  const auto first =
      std::ranges::lower_bound(functions_, CodePlace(functions_[function]), {}, CodePlace);
  return static_cast<uint32_t>(first - functions_.begin());
}

uint32_t ObjectFacts::FunctionAt(uint32_t section, uint64_t address) const {
  const auto next =
      std::ranges::upper_bound(functions_, std::pair(section, address), {}, CodePlace);
  if (next == functions_.begin() || std::prev(next)->section != section) {
    return ObjectCall::kNoFunction;
  }
  const uint32_t first = FirstAlias(static_cast<uint32_t>(next - functions_.begin() - 1));
  uint64_t size = 0;
  for (auto alias = functions_.begin() + first; alias != next; ++alias) {
    size = std::max(size, alias->size);
  }
  // Without a size it reaches to the next one.
  const bool holds = size == 0 || address - functions_[first].address < size;
  return holds ? first : ObjectCall::kNoFunction;
}

void ObjectFacts::CollectRelocations(uint32_t section) {
  const ElfSection& holder = elf_.Sections()[section];
  const bool areAddressesUsed = HoldsUsedAddresses(holder);
  for (const ElfRelocation& relocation : elf_.RelocationsOf(section, faults_)) {
    const std::optional<BranchRelocation> branch =
        holder.HasCode() ? ReadBranch(elf_, holder.bytes, relocation) : std::nullopt;
    if (branch) {
      CollectCall(section, relocation, *branch);
    } else if (areAddressesUsed) {
      CollectAddress(section, relocation);
    }
  }
  if (holder.HasCode()) {
    for (const uint64_t place : OwnAddressesIn(elf_, holder)) {
      TakePlace(section, place);
    }
  }
}

void ObjectFacts::CollectCall(uint32_t section, const ElfRelocation& relocation,
                              const BranchRelocation& branch) {
  ObjectCall call;
  call.section = section;
  call.offset = relocation.offset;
  call.caller = FunctionAt(section, relocation.offset);
  call.isJump = branch.isJump;
  AddCall(elf_.Symbols()[relocation.symbol], branch.addend, call);
}

// Of symbols that the object does not define, all are taken for functions; data is never called.
void ObjectFacts::CollectAddress(uint32_t section, const ElfRelocation& relocation) {
  const ElfSymbol& symbol = elf_.Symbols()[relocation.symbol];
  if (symbol.type == ElfSymbolType::kSection) {
    const ElfSection& holder = elf_.Sections()[section];
    if (const auto place = AddressInSection(elf_, holder, relocation)) {
      const uint64_t thumb = elf_.Machine() == ELF_ARM ? 1 : 0;
      TakePlace(symbol.section, (symbol.value + static_cast<uint64_t>(*place)) & ~thumb);
    }
  } else if (IsFunction(symbol)) {
    TakeAddress({symbol.name, FunctionAt(symbol.section, AddressOf(symbol))});
  } else if (symbol.section == ElfSymbol::kUndefined && !symbol.name.empty()) {
    TakeAddress({symbol.name, ObjectCall::kNoFunction});
  }
}

void ObjectFacts::TakePlace(uint32_t section, uint64_t address) {
  const uint32_t function = FunctionAt(section, address);
  if (function != ObjectCall::kNoFunction && functions_[function].address == address) {
    TakeAddress({functions_[function].name, function});
  }
}

void ObjectFacts::TakeAddress(const TakenAddress& taken) {
  if (namesTaken_.insert(taken.target).second) {
    takenAddresses_.push_back(taken);
  }
}

// A target within the calling function is no call: a jump to a place of its own, or to its start,
// which a loop does as well as a tail call to itself, and that takes no stack.
void ObjectFacts::AddCall(const ElfSymbol& symbol, int64_t addend, ObjectCall call) {
  call.target = symbol.name;
  if (symbol.section != ElfSymbol::kUndefined) {
    const uint64_t place = AddressOf(symbol) + static_cast<uint64_t>(addend);
    call.targetFunction = FunctionAt(symbol.section, place);
    if (call.targetFunction != ObjectCall::kNoFunction) {
      const bool atStart = functions_[call.targetFunction].address == place;
      if (call.targetFunction == call.caller && (call.isJump || !atStart)) {
        return;
      }
      const bool named = atStart && IsFunction(symbol);
      call.target = named ? symbol.name : functions_[call.targetFunction].name;
    }
  }
  calls_.push_back(call);
}

void ObjectFacts::ReadCompiler() {
  const ElfSection* comment = elf_.FindSection(".comment");
  if (comment != nullptr) {
    const size_t start = comment->bytes.find_first_not_of('\0');
    const std::string_view text = comment->bytes.substr(std::min(start, comment->bytes.size()));
    compiler_ = text.substr(0, text.find('\0'));
  }
}

}  // namespace velkor
