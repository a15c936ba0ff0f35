#include "readers/gcc/code/pointed_functions.h"

#include <algorithm>

#include "readers/gcc/byte_reader.h"

namespace velkor {
namespace {

constexpr uint32_t kWithAddends = 4;  // type of a section of relocations with addends
constexpr size_t kMostArrays = 16;

// What is called at the start and at the end of a program.
bool IsArrayOfStart(const ElfSection& section) {
  constexpr uint32_t kFirst = 14;
  constexpr uint32_t kLast = 16;
  return section.type >= kFirst && section.type <= kLast;
}

class Pointers {
 public:
  Pointers(const ElfFile& elf, const std::vector<uint64_t>& starts)
      : elf_(elf), starts_(starts), isPointed_(starts.size(), false) {
    for (const ElfSection& section : elf.Sections()) {
      if (IsArrayOfStart(section) && arrays_.size() < kMostArrays) {
        arrays_.push_back(&section);
      }
    }
  }

  void Take(uint64_t word) {
    if (word < starts_.front() || word > starts_.back()) {
      return;
    }
    const auto found = std::ranges::lower_bound(starts_, word);
    if (*found == word) {
      isPointed_[static_cast<size_t>(found - starts_.begin())] = true;
    }
  }
  // What is added to the address of a program that may be loaded anywhere.
  void TakeAddends(const ElfSection& section) {
    const size_t width = elf_.AddressSize();
    ByteReader reader(section.bytes, elf_.Order());
    for (size_t left = section.bytes.size() / (3 * width); left > 0; --left) {
      const uint64_t place = reader.Unsigned(width);
      reader.Unsigned(width);
      const uint64_t addend = reader.Unsigned(width);
      const bool isOfArray = std::ranges::any_of(arrays_, [&](const ElfSection* array) {
        return place - array->address < array->bytes.size();
      });
      if (!isOfArray) {
        Take(addend);
      }
    }
  }
  void TakeWords(const ElfSection& section) {
    const size_t width = elf_.AddressSize();
    const auto before = static_cast<size_t>((0 - section.address) % width);
    if (section.bytes.size() < before) {
      return;
    }
    ByteReader reader(section.bytes, elf_.Order(), before);
    for (size_t left = (section.bytes.size() - before) / width; left > 0; --left) {
      Take(reader.Unsigned(width));
    }
  }
  std::vector<uint32_t> Numbers() const {
    std::vector<uint32_t> numbers;
    for (size_t i = 0; i < isPointed_.size(); ++i) {
      if (isPointed_[i]) {
        numbers.push_back(static_cast<uint32_t>(i));
      }
    }
    return numbers;
  }

 private:
  const ElfFile& elf_;
  std::vector<const ElfSection*> arrays_;
  const std::vector<uint64_t>& starts_;
  std::vector<bool> isPointed_;
};

}  // namespace

std::vector<uint32_t> PointedFunctions(const ElfFile& elf, const std::vector<uint64_t>& starts) {
  if (starts.empty()) {
    return {};
  }
  Pointers pointers(elf, starts);
  for (const ElfSection& section : elf.Sections()) {
    if (section.IsLoaded() && section.type == kWithAddends) {
      pointers.TakeAddends(section);
    } else if (section.IsLoaded() && !IsArrayOfStart(section)) {
      pointers.TakeWords(section);
    }
  }
  return pointers.Numbers();
}

}  // namespace velkor
