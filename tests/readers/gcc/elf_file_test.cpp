#include "readers/gcc/elf_file.h"

#include <gtest/gtest.h>

#include "readers/gcc/call_frames.h"
#include "readers/gcc/elf_image.h"
#include "readers/gcc/object_facts.h"

namespace velkor {
namespace {

using testing::ElfImage;
using testing::Image;

struct Form {
  bool is64;
  ByteOrder order;
};

class ElfForms : public ::testing::TestWithParam<Form> {
 protected:
  ElfImage Program() const {
    ElfImage image(ELF_ARM, GetParam().is64, GetParam().order);
    const uint32_t code = image.AddCode(".text.f", std::string("\xFE\xFF\xFF\xEB", 4), 0x8000);
    image.Add({".bss", 8, 3, "", 0, 0, 0, 0x20000000, 0x1000});
    const uint32_t f = image.AddSymbol("f", ElfImage::kWeakFunction, code, 0x8001, 4);
    image.AddSymbol("count", 0x11, 2, 0x20000010, 400);
    image.AddSymbol("g", 0x10, 0);
    image.AddSymbol("limit", 0x10, 0xFFF1, 0x400);
    image.AddRelocation(code, 2, 28, 3, -8);
    image.AddRelocation(code, 0, 28, f, 12);
    image.AddSegment(1, code);
    image.entryAddress = 0x8001;
    return image;
  }
};

TEST_P(ElfForms, TellTheSame) {
  const std::string bytes = Program().Build();
  const ElfFile elf(bytes);
  ASSERT_TRUE(elf.IsElf() && elf.Faults().IsEmpty());
  EXPECT_TRUE(elf.IsRelocatable() && elf.Machine() == ELF_ARM && elf.Entry() == 0x8001);

  const ElfSection* code = elf.FindSection(".text.f");
  ASSERT_NE(code, nullptr);
  EXPECT_TRUE(code->HasCode() && code->address == 0x8000 && code->bytes.size() == 4);
  const ElfSection& bss = elf.Sections()[2];
  EXPECT_TRUE(bss.state == ElfSectionState::kAbsent && bss.size == 0x1000 && bss.bytes.empty());

  ASSERT_EQ(elf.Symbols().size(), 5U);
  const ElfSymbol& f = elf.Symbols()[1];
  EXPECT_TRUE(f.name == "f" && f.value == 0x8001 && f.size == 4 && f.section == 1);
  EXPECT_TRUE(f.IsFunction() && f.binding == ElfBinding::kWeak);
  EXPECT_TRUE(elf.Symbols()[2].name == "count" && elf.Symbols()[2].size == 400);
  EXPECT_EQ(elf.Symbols()[3].section, ElfSymbol::kUndefined);
  EXPECT_EQ(elf.Symbols()[4].section, ElfSymbol::kAbsolute);

  BinaryFaults faults;
  const std::vector<ElfRelocation> relocations = elf.RelocationsOf(1, faults);
  ASSERT_EQ(relocations.size(), 2U);
  EXPECT_TRUE(relocations[0].offset == 0 && relocations[0].symbol == 1);
  EXPECT_TRUE(relocations[1].type == 28 && relocations[1].addendInPlace == !GetParam().is64);
  EXPECT_EQ(relocations[1].addend, GetParam().is64 ? -8 : 0);

  ASSERT_EQ(elf.Segments().size(), 1U);
  EXPECT_TRUE(elf.Segments()[0].IsLoaded() && elf.Segments()[0].address == 0x8000);
  EXPECT_EQ(elf.Segments()[0].bytes, code->bytes);
}

// Nothing is read outside, and a file that lacks something says so.
TEST_P(ElfForms, MayBeCutAnywhere) {
  const std::string whole = Program().Build();
  for (size_t length = 0; length < whole.size(); ++length) {
    const std::string cut = whole.substr(0, length);
    const ElfFile elf(cut);
    EXPECT_FALSE(elf.Faults().IsEmpty()) << length;
    EXPECT_TRUE(ObjectFacts(elf).Functions().size() <= 1U && CallFrames(elf).Frames().empty());
  }
}

TEST_P(ElfForms, MayHoldAnything) {
  const std::string whole = Program().Build();
  for (size_t i = 0; i < whole.size(); ++i) {
    for (const char byte : {'\x00', '\x7F', '\xFF'}) {
      std::string changed = whole;
      changed[i] = byte;
      const ElfFile elf(changed);
      EXPECT_LE(elf.Sections().size(), changed.size());
      EXPECT_LE(ObjectFacts(elf).Calls().size() + CallFrames(elf).Frames().size(), 3U);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(, ElfForms,
                         ::testing::Values(Form{false, ByteOrder::kLittle},
                                           Form{false, ByteOrder::kBig},
                                           Form{true, ByteOrder::kLittle},
                                           Form{true, ByteOrder::kBig}));

struct Broken {
  BinaryFault fault;
  ElfImage::Section section;
};

// One fault each; the rest of the file serves all the same.
TEST(ElfFile, SaysWhatIsNotUsable) {
  const std::string kSymbols(33, '\0');
  const Broken kCases[] = {
      {BinaryFault::kOutsideFile, {".x", 1, 0, "abc", 0, 0, 0, 0, UINT64_MAX - 1}},
      {BinaryFault::kOutsideFile, {".x", 1, 0, "", 0, 0, 0, 0, 4, 0xFFFFFFF0}},
      {BinaryFault::kOverlaps, {".x", 1, 0, "", 0, 0, 0, 0, 500, 0}},
      {BinaryFault::kEntrySize, {".symtab", 2, 0, kSymbols, 0, 0, 16}},
      {BinaryFault::kEntrySize, {".symtab", 2, 0, kSymbols, 0, 0, 24}},
  };
  for (const Broken& one : kCases) {
    ElfImage image(ELF_ARM, false);
    image.AddCode(".text", std::string(300, 'c'));
    image.Add(one.section);
    const std::string bytes = image.Build();
    const ElfFile elf(bytes);
    ASSERT_EQ(elf.Faults().Entries().size(), 1U) << TextOf(one.fault);
    EXPECT_EQ(elf.Faults().Entries()[0].fault, one.fault);
    EXPECT_EQ(elf.FindSection(".text")->bytes.size(), 300U);
  }
  EXPECT_TRUE(ElfFile("!<arch>\n").Faults().Has(BinaryFault::kNotElf));
  EXPECT_TRUE(ElfFile("\x7F"
                      "ELF\x03\x01 and more of it")
                  .Faults()
                  .Has(BinaryFault::kUnknownClass));
}

TEST(ElfFile, NamesThatShareTheirBytesAreLimited) {
  ElfImage image(ELF_X86_64, true);
  image.AddSymbol(std::string(100000, 'n'), ElfImage::kGlobalFunction, 0xFFF1);
  for (int i = 0; i < 5000; ++i) {
    image.AddSymbol("", ElfImage::kGlobalFunction, 0xFFF1);
  }
  std::string bytes = image.Build();
  const auto table =
      static_cast<size_t>(ElfFile(bytes).FindSection(".symtab")->bytes.data() - bytes.data());
  for (size_t i = 2; i < 5002; ++i) {
    bytes[table + i * 24] = 1;
    bytes[table + i * 24 + 1] = bytes[table + i * 24 + 2] = 0;
  }
  const ElfFile elf(bytes);
  size_t total = 0;
  for (const ElfSymbol& symbol : elf.Symbols()) {
    total += symbol.name.size();
  }
  EXPECT_LE(total, 16 * bytes.size());
  EXPECT_TRUE(elf.Faults().Has(BinaryFault::kNamesTooLong));
  EXPECT_EQ(elf.Symbols().size(), 5002U);
}

// With more sections than the header can count, numbers stand elsewhere.
TEST(ElfFile, NumbersOfManySections) {
  ElfImage image(ELF_ARM, false);
  const uint32_t code = image.AddCode(".text.last", "code");
  const uint32_t symbolTable = code + 2;  // where the image puts it
  image.Add({".symtab_shndx", 18, 0, Image().Word(0).Word(code).bytes, symbolTable});
  image.AddSymbol("last", ElfImage::kGlobalFunction, 0xFFFF);
  std::string bytes = image.Build();
  const ElfFile plain(bytes);
  EXPECT_EQ(plain.Symbols().at(1).section, code);

  // The counts of the header move to the first section.
  const auto count = static_cast<uint8_t>(bytes[48]);
  const auto names = static_cast<uint8_t>(bytes[50]);
  const size_t table = static_cast<uint8_t>(bytes[32]) + 256U * static_cast<uint8_t>(bytes[33]);
  bytes[48] = 0;
  bytes[50] = bytes[51] = '\xFF';
  bytes[table + 20] = static_cast<char>(count);
  bytes[table + 24] = static_cast<char>(names);
  const ElfFile moved(bytes);
  EXPECT_TRUE(moved.Faults().IsEmpty());
  EXPECT_EQ(moved.Sections().size(), count);
  EXPECT_NE(moved.FindSection(".text.last"), nullptr);
}

}  // namespace
}  // namespace velkor
