#include "readers/gcc/address_uses.h"

#include <algorithm>
#include <array>

#include "readers/gcc/branch_relocation.h"
#include "readers/gcc/byte_reader.h"

namespace velkor {
namespace {

class AddressSearch {
 public:
  AddressSearch(const ElfFile& elf, const ObjectFacts& facts) : elf_(elf), facts_(facts) {}

  std::vector<AddressUse> Run() {
    BinaryFaults faults;  // told where the calls are read
    for (uint32_t i = 0; i < elf_.Sections().size(); ++i) {
      const ElfSection& section = elf_.Sections()[i];
      if (!section.HasCode()) {
        continue;
      }
      for (const ElfRelocation& relocation : elf_.RelocationsOf(i, faults)) {
        if (!ReadBranch(elf_, section.bytes, relocation)) {
          Add(i, section, relocation);
        }
      }
    }
    return std::move(uses_);
  }

 private:
  void Add(uint32_t number, const ElfSection& section, const ElfRelocation& relocation) {
    const uint32_t user = facts_.FunctionAt(number, relocation.offset);
    if (user == ObjectCall::kNoFunction) {
      return;
    }
    const ElfSymbol& symbol = elf_.Symbols()[relocation.symbol];
    if (symbol.section == ElfSymbol::kUndefined) {
      if (!symbol.name.empty()) {
        uses_.push_back({user, symbol.name});
      }
    } else if (symbol.IsFunction()) {
      AddFunction(user, facts_.Find(symbol.name));
    } else if (symbol.type == ElfSymbolType::kSection) {
      AddPlace(user, symbol.section, AddendOf(section, relocation));
    }
  }

  void AddFunction(uint32_t user, uint32_t function) {
    if (function != ObjectCall::kNoFunction) {
      uses_.push_back({user, facts_.Functions()[function].name, function});
    }
  }

  // The addend of a place that is told from the end of the instruction is 4 less.
  void AddPlace(uint32_t user, uint32_t section, uint64_t addend) {
    const uint64_t thumb = elf_.Machine() == ELF_ARM ? 1 : 0;
    for (const uint64_t place : {addend & ~thumb, addend + 4}) {
      const uint32_t function = facts_.FunctionAt(section, place);
      if (function != ObjectCall::kNoFunction && facts_.Functions()[function].address == place) {
        AddFunction(user, function);
        return;
      }
    }
  }

  uint64_t AddendOf(const ElfSection& section, const ElfRelocation& relocation) const {
    const uint64_t inPlace = relocation.addendInPlace
                                 ? ByteReader(section.bytes, elf_.Order(), relocation.offset).Word()
                                 : 0;
    return inPlace + static_cast<uint64_t>(relocation.addend);
  }

  const ElfFile& elf_;
  const ObjectFacts& facts_;
  std::vector<AddressUse> uses_;
};

}  // namespace

std::vector<AddressUse> AddressUsesOf(const ElfFile& elf, const ObjectFacts& facts) {
  return AddressSearch(elf, facts).Run();
}

bool IsTaskCreator(std::string_view symbol) {
  constexpr std::array<std::string_view, 12> kCreators = {"xTaskCreate",
                                                          "xTaskCreateStatic",
                                                          "xTaskCreateRestricted",
                                                          "xTaskCreateRestrictedStatic",
                                                          "xTaskCreateAffinitySet",
                                                          "xTaskCreateStaticAffinitySet",
                                                          "xTaskCreatePinnedToCore",
                                                          "xTaskCreateStaticPinnedToCore",
                                                          "k_thread_create",
                                                          "z_impl_k_thread_create",
                                                          "osThreadNew",
                                                          "osThreadCreate"};
  return std::ranges::find(kCreators, symbol) != kCreators.end();
}

}  // namespace velkor
