#include "readers/gcc/code/code_image.h"

#include <algorithm>

namespace velkor {
namespace {

constexpr uint64_t kWritable = 1;

// The letter of a mapping symbol ("$t", "$d.realdata"), 0 for every other symbol.
char MarkOf(const ElfSymbol& symbol) {
  const std::string_view name = symbol.name;
  const bool isMark = symbol.type == ElfSymbolType::kNone && symbol.binding == ElfBinding::kLocal &&
                      name.size() >= 2 && name[0] == '$' && (name.size() == 2 || name[2] == '.');
  return isMark && std::string_view("atdx").find(name[1]) != std::string_view::npos ? name[1]
                                                                                    : '\0';
}

}  // namespace

CodeImage::CodeImage(const ElfFile& elf)
    : table_(elf), order_(elf.Order()), isArm_(elf.Machine() == ELF_ARM), is64_(elf.Is64()) {
  for (const ElfSection& section : elf.Sections()) {
    const bool isConstant = section.HasCode() || (section.flags & kWritable) == 0;
    if (section.IsLoaded() && isConstant && !section.bytes.empty()) {
      parts_.push_back({section.address, section.bytes, section.HasCode()});
    }
  }
  std::ranges::stable_sort(parts_, {}, &Part::address);
  for (const ElfSymbol& symbol : elf.Symbols()) {
    const bool isHere = symbol.section != ElfSymbol::kUndefined &&
                        symbol.section < elf.Sections().size() &&
                        elf.Sections()[symbol.section].HasCode();
    if (const char kind = MarkOf(symbol); kind != '\0' && isHere) {
      // Behind a table of bytes they stand before what aligns the code.
      marks_.push_back({kind == 't' ? Place(symbol.value + 1) : Place(symbol.value), kind});
    }
  }
  std::ranges::stable_sort(marks_, {}, &Mark::address);
}

const CodeImage::Part* CodeImage::PartAt(uint64_t address) const {
  const auto next = std::ranges::upper_bound(parts_, address, {}, &Part::address);
  if (next == parts_.begin()) {
    return nullptr;
  }
  const Part& part = *std::prev(next);
  return address - part.address < part.bytes.size() ? &part : nullptr;
}

std::string_view CodeImage::CodeAt(uint64_t address) const {
  const Part* part = PartAt(Place(address));
  return part != nullptr && part->isCode
             ? part->bytes.substr(static_cast<size_t>(Place(address) - part->address))
             : std::string_view();
}

std::string_view CodeImage::ConstantsAt(uint64_t address) const {
  const Part* part = PartAt(address);
  return part != nullptr ? part->bytes.substr(static_cast<size_t>(address - part->address))
                         : std::string_view();
}

const CodeImage::Mark* CodeImage::MarkAt(uint64_t address) const {
  const auto next = std::ranges::upper_bound(marks_, Place(address), {}, &Mark::address);
  return next == marks_.begin() ? nullptr : &*std::prev(next);
}

bool CodeImage::IsData(uint64_t address) const {
  const Mark* mark = MarkAt(address);
  return mark != nullptr && mark->kind == 'd' && !(isArm_ && IsReturnWord(address));
}

// Old assemblers had no name for it, so that sources hold it as data.
bool CodeImage::IsReturnWord(uint64_t address) const {
  constexpr std::string_view kJumpToLink = "\x1E\xFF\x2F\xE1";
  return address % 4 == 0 && order_ == ByteOrder::kLittle &&
         CodeAt(address).starts_with(kJumpToLink);
}

std::optional<bool> CodeImage::IsThumb(uint64_t address) const {
  const Mark* mark = MarkAt(address);
  return mark != nullptr && mark->kind != 'd' ? std::optional(mark->kind == 't') : std::nullopt;
}

uint64_t CodeImage::NextMark(uint64_t address) const {
  const auto next = std::ranges::upper_bound(marks_, Place(address), {}, &Mark::address);
  return next == marks_.end() ? UINT64_MAX : next->address;
}

uint64_t CodeImage::CodeBytes() const {
  uint64_t bytes = 0;
  for (const Part& part : parts_) {
    bytes += part.isCode ? part.bytes.size() : 0;
  }
  return bytes;
}

}  // namespace velkor
