#include "readers/gcc/object_facts.h"

#include <gtest/gtest.h>

#include "readers/gcc/elf_image.h"
#include "readers/gcc/object_match.h"

namespace velkor {
namespace {

using testing::ElfImage;

struct Branch {
  uint16_t machine;
  ByteOrder order;
  uint32_t type;
  std::string bytes;  // of the code; "?" marks nothing, the relocation is at offset
  uint64_t offset;
  std::string_view expected;  // "call", "jump", "" for neither
};

constexpr ByteOrder kLittle = ByteOrder::kLittle;
constexpr ByteOrder kBig = ByteOrder::kBig;

std::string Code(const char* bytes, size_t length) {
  return {bytes, length};
}

// The distance in the bytes is the one that means the symbol itself.
const Branch kBranches[] = {
    {ELF_ARM, kLittle, 10, "\xFF\xF7\xFE\xFF", 0, "call"},  // bl
    {ELF_ARM, kBig, 10, "\xF7\xFF\xFF\xFE", 0, "call"},
    {ELF_ARM, kLittle, 30, "\xFF\xF7\xFE\xBF", 0, "jump"},  // b.w
    {ELF_ARM, kLittle, 51, "\x3F\xF4\xFE\xAF", 0, "jump"},  // beq.w
    {ELF_ARM, kLittle, 102, "\xFE\xE7", 0, "jump"},         // b
    {ELF_ARM, kLittle, 103, "\xFE\xD0", 0, "jump"},         // beq
    {ELF_ARM, kLittle, 28, "\xFE\xFF\xFF\xEB", 0, "call"},  // bl
    {ELF_ARM, kBig, 28, "\xEB\xFF\xFF\xFE", 0, "call"},
    {ELF_ARM, kLittle, 29, "\xFE\xFF\xFF\xEA", 0, "jump"},  // b
    {ELF_ARM, kLittle, 29, "\xFE\xFF\xFF\x0B", 0, "call"},  // bleq
    {ELF_ARM, kLittle, 27, "\xFE\xFF\xFF\xFA", 0, "call"},  // blx
    {ELF_ARM, kLittle, 2, "\xFE\xFF\xFF\xEB", 0, ""},       // an address
    {ELF_X86_64, kLittle, 4, Code("\xE8\0\0\0\0", 5), 1, "call"},
    {ELF_X86_64, kLittle, 4, Code("\xE9\0\0\0\0", 5), 1, "jump"},
    {ELF_X86_64, kLittle, 4, Code("\x0F\x84\0\0\0\0", 6), 2, "jump"},
    {ELF_X86_64, kLittle, 2, Code("\x90\xE8\0\0\0\0", 6), 2, "call"},
    {ELF_X86_64, kLittle, 2, Code("\x8B\x05\0\0\0\0", 6), 2, ""},  // mov
    {ELF_X86_64, kLittle, 41, Code("\xFF\x15\0\0\0\0", 6), 2, "call"},
    {ELF_X86_64, kLittle, 41, Code("\xFF\x25\0\0\0\0", 6), 2, "jump"},
    {ELF_X86_64, kLittle, 2, Code("\xFF\x15\0\0\0\0", 6), 2, ""},  // through a variable
    {ELF_RISCV, kLittle, 19, Code("\x97\0\0\0\xE7\x80\0\0", 8), 0, "call"},
    {ELF_RISCV, kLittle, 18, Code("\x17\x03\0\0\x67\0\x03\0", 8), 0, "jump"},
    {ELF_RISCV, kLittle, 17, Code("\xEF\0\0\0", 4), 0, "call"},
    {ELF_RISCV, kLittle, 17, Code("\x6F\0\0\0", 4), 0, "jump"},
    {ELF_AVR, kLittle, 18, Code("\x0E\x94\0\0", 4), 0, "call"},
    {ELF_AVR, kLittle, 18, Code("\x0C\x94\0\0", 4), 0, "jump"},
    {ELF_AVR, kLittle, 3, Code("\0\xD0", 2), 0, "call"},
    {ELF_AVR, kLittle, 3, Code("\0\xC0", 2), 0, "jump"},
    {ELF_AARCH64, kLittle, 283, Code("\0\0\0\x94", 4), 0, "call"},
    {ELF_AARCH64, kLittle, 280, Code("\0\0\0\x54", 4), 0, "jump"},
    {ELF_AARCH64, kLittle, 282, Code("\0\0\0\x14", 4), 0, "jump"},
    {8, kLittle, 4, Code("\0\0\0\x0C", 4), 0, ""},  // MIPS is not known
};

// What the distance counts from, for relocations that keep it themselves.
int64_t AddendOf(const Branch& branch) {
  return branch.machine == ELF_X86_64 ? -4 : 0;
}

TEST(ObjectFacts, CallsOfEachMachine) {
  for (const Branch& branch : kBranches) {
    const auto number = &branch - kBranches;
    ElfImage image(branch.machine, branch.machine != ELF_ARM, branch.order);
    const uint32_t code = image.AddCode(".text.f", branch.bytes);
    const uint32_t other = image.AddCode(".text.g", std::string(32, '\0'));
    image.AddSymbol("f", ElfImage::kGlobalFunction, code, 0, branch.bytes.size());
    image.AddSymbol("before", ElfImage::kLocalFunction, other, 0, 16);
    const uint32_t g = image.AddSymbol("g", ElfImage::kLocalFunction, other, 16, 16);
    const uint32_t section = image.AddSymbol("", 3, other, 16);
    const uint32_t unknown = image.AddSymbol("unknown", 0x10, 0);
    for (const uint32_t symbol : {g, section, unknown}) {
      image.AddRelocation(code, branch.offset, branch.type, symbol, AddendOf(branch));
    }
    const std::string bytes = image.Build();
    const ElfFile elf(bytes);
    const ObjectFacts facts(elf);
    EXPECT_EQ(facts.KnowsCalls(), branch.machine != 8);
    if (branch.expected.empty()) {
      EXPECT_TRUE(facts.Calls().empty()) << number;
      continue;
    }
    ASSERT_EQ(facts.Calls().size(), 3U) << number;
    for (size_t i = 0; i < 3; ++i) {
      const ObjectCall& call = facts.Calls()[i];
      EXPECT_EQ(call.isJump ? "jump" : "call", branch.expected) << number;
      EXPECT_EQ(call.target, i == 2 ? "unknown" : "g") << number;
      EXPECT_EQ(call.targetFunction, i == 2 ? ObjectCall::kNoFunction : facts.Find("g"));
      EXPECT_EQ(call.caller, facts.Find("f"));
    }
  }
}

// By the symbol of a section, to the start of g; what stands in the code is no branch.
TEST(ObjectFacts, AddressesThatAreTaken) {
  struct Address {
    uint16_t machine;
    uint32_t type;
    int64_t addend;
    bool inData;
    bool inCode;
  };
  constexpr Address kAddresses[] = {
      {ELF_X86_64, 1, 16, true, true},    {ELF_X86_64, 10, 16, true, true},
      {ELF_X86_64, 2, 12, false, true},  // lea; in data a table of jumps
      {ELF_X86_64, 2, 16, false, false},  {ELF_X86_64, 1, 20, false, false},
      {ELF_ARM, 2, 17, true, true},       {ELF_ARM, 38, 16, true, true},
      {ELF_ARM, 42, 16, false, false},  // PREL31
      {ELF_AARCH64, 257, 16, true, true}, {ELF_AARCH64, 277, 16, false, true},
      {ELF_RISCV, 2, 16, true, true},     {ELF_AVR, 4, 16, true, true},
      {8, 2, 16, false, false},
  };
  for (const Address& each : kAddresses) {
    for (const bool inCode : {false, true}) {
      const bool inPlace = each.machine == ELF_ARM;
      ElfImage image(each.machine, !inPlace);
      const std::string value = inPlace ? std::string(1, static_cast<char>(each.addend)) : "";
      const uint32_t code = image.AddCode(".text.f", value + std::string(16, '\0'));
      const uint32_t data = image.Add({".rodata", 1, 2, value + std::string(16, '\0')});
      const uint32_t frames = image.Add({".eh_frame", 1, 2, value + std::string(16, '\0')});
      const uint32_t vectors = image.Add({".isr_vector", 1, 2, value + std::string(16, '\0')});
      const uint32_t other = image.AddCode(".text.g", std::string(32, '\0'));
      image.AddSymbol("f", ElfImage::kGlobalFunction, code, 0, 16);
      image.AddSymbol("before", ElfImage::kLocalFunction, other, 0, 16);
      image.AddSymbol("g", ElfImage::kLocalFunction, other, 16, 16);
      const uint32_t section = image.AddSymbol("", 3, other);
      image.AddRelocation(frames, 0, each.type, section, each.addend);
      image.AddRelocation(vectors, 0, each.type, section, each.addend);
      image.AddRelocation(inCode ? code : data, 0, each.type, section, each.addend);
      const std::string bytes = image.Build();
      const ElfFile elf(bytes);
      const ObjectFacts facts(elf);
      const bool expected = inCode ? each.inCode : each.inData;
      ASSERT_EQ(facts.TakenAddresses().size(), expected ? 1U : 0U)
          << each.machine << " " << each.type << " " << inCode;
      EXPECT_TRUE(!expected || facts.TakenAddresses().front().target == "g");
      EXPECT_TRUE(facts.Calls().empty());
    }
  }
}

// lea of a place in the same section has no relocation.
TEST(ObjectFacts, AddressesThatTheAssemblerSettles) {
  ElfImage image(ELF_X86_64, true);
  const uint32_t code = image.AddCode(".text", Code("\x48\x8D\x05\x09\0\0\0"  // of g
                                                    "\x48\x8D\x3D\x03\0\0\0"  // of the middle of f
                                                    "\x8D\x0D",               // cut
                                                    16) +
                                                   std::string(1, '\x90'));
  image.AddSymbol("f", ElfImage::kLocalFunction, code, 0, 16);
  image.AddSymbol("g", ElfImage::kLocalFunction, code, 16, 1);
  const std::string bytes = image.Build();
  const ElfFile elf(bytes);
  const ObjectFacts facts(elf);
  ASSERT_EQ(facts.TakenAddresses().size(), 1U);
  EXPECT_EQ(facts.TakenAddresses().front().target, "g");
}

// The first function of the section calls itself, jumps within itself and has a part elsewhere.
TEST(ObjectFacts, JumpsWithinAFunctionAreNoCalls) {
  ElfImage image(ELF_X86_64, true);
  const uint32_t code = image.AddCode(".text", std::string(40, '\xE9'));
  const uint32_t cold = image.AddCode(".text.unlikely", std::string(20, '\xE9'));
  image.AddSymbol("f", ElfImage::kGlobalFunction, code, 0, 20);
  image.AddSymbol("f.cold", ElfImage::kLocalFunction, cold, 0, 20);
  image.AddSymbol("g", ElfImage::kGlobalFunction, code, 20, 20);
  const uint32_t inCode = image.AddSymbol("", 3, code);
  const uint32_t inCold = image.AddSymbol("", 3, cold);
  image.AddRelocation(code, 4, 4, inCode, 6);    // to its middle
  image.AddRelocation(code, 8, 4, inCode, -4);   // to its start
  image.AddRelocation(code, 12, 4, inCold, -4);  // to its other part
  image.AddRelocation(cold, 4, 4, inCode, 2);    // and back
  image.AddRelocation(cold, 8, 4, inCode, 16);   // to g
  const std::string bytes = image.Build();
  const ElfFile elf(bytes);
  const ObjectFacts facts(elf);
  ASSERT_EQ(facts.Calls().size(), 3U);
  const CallGraphFile graph = ReadCallGraph(
      "graph: { title: \"x.c\"\n"
      "node: { title: \"f\" label: \"f\\nx.c:1:1\\n0 bytes (static)\" }\n"
      "node: { title: \"g\" label: \"g\\nx.c:1:1\\n0 bytes (static)\" }\n}\n");
  const ObjectMatch match = MatchObject(graph, facts);
  ASSERT_EQ(match.hiddenCalls.size(), 1U);
  EXPECT_EQ(match.hiddenCalls[0].node, 0U);
  EXPECT_EQ(facts.Calls()[match.hiddenCalls[0].call].target, "g");
  EXPECT_TRUE(match.functionsWithoutNode.empty());
}

class SampleObject : public ::testing::Test {
 protected:
  SampleObject() {
    const uint32_t code = image_.AddCode(".text", std::string(100, '\0'));
    image_.AddSymbol("$t", 0, code);
    image_.AddSymbol("x.c", 4, 0xFFF1);
    image_.AddSymbol("local", ElfImage::kLocalFunction, code, 1, 20);
    image_.AddSymbol("alias", ElfImage::kWeakFunction, code, 21, 20);
    image_.AddSymbol("function", ElfImage::kGlobalFunction, code, 21, 20);
    image_.AddSymbol("label", 0x10, code, 40);
    image_.AddSymbol("absolute", ElfImage::kGlobalFunction, 0xFFF1, 0x100);
    bl_ = image_.AddSymbol("helper", 0x10, 0);
    image_.AddRelocation(code, 4, 10, bl_);
    image_.AddRelocation(code, 24, 10, bl_);
    image_.AddRelocation(code, 44, 30, bl_);
    image_.Add({".comment", 1, 0x30, std::string("\0GCC: (own) 14.1\0", 17)});
    image_.Add({".gnu.lto_.symtab", 1, 0, ""});
    bytes_ = image_.Build();
  }

  ElfImage image_{ELF_ARM, false};
  uint32_t bl_ = 0;
  std::string bytes_;
};

TEST_F(SampleObject, TellsItsFunctions) {
  const ElfFile elf(bytes_);
  const ObjectFacts facts(elf);
  ASSERT_EQ(facts.Functions().size(), 4U);
  const ObjectFunction& local = facts.Functions()[facts.Find("local")];
  EXPECT_TRUE(local.reach == FunctionReach::kLocal && local.file == "x.c" && local.address == 0);
  const uint32_t alias = facts.Find("alias");
  const uint32_t function = facts.Find("function");
  EXPECT_EQ(facts.FirstAlias(alias), facts.FirstAlias(function));
  EXPECT_EQ(facts.Functions()[alias].reach, FunctionReach::kWeak);
  EXPECT_EQ(facts.FunctionAt(1, 39), facts.FirstAlias(function));
  EXPECT_EQ(facts.FunctionAt(1, 99), facts.Find("label"));  // without a size
  EXPECT_FALSE(facts.Functions()[facts.Find("label")].isTyped);
  EXPECT_EQ(facts.FunctionAt(2, 0), ObjectCall::kNoFunction);
  EXPECT_TRUE(facts.Compiler() == "GCC: (own) 14.1" && facts.HasLinkTimeCode());

  ElfImage assembled(ELF_ARM, false);
  assembled.AddCode(".text", "code");
  const std::string bytes = assembled.Build();
  const ElfFile plain(bytes);
  EXPECT_TRUE(ObjectFacts(plain).Compiler().empty() && !ObjectFacts(plain).HasLinkTimeCode());
}

// An edge to an alias explains a call of the other name, and code without a node is told.
TEST_F(SampleObject, IsHeldAgainstItsCallGraph) {
  const CallGraphFile graph = ReadCallGraph(
      "graph: { title: \"x.c\"\n"
      "node: { title: \"x.c:*local\" label: \"local\\nx.c:1:1\\n0 bytes (static)\" }\n"
      "node: { title: \"function\" label: \"function\\nx.c:1:1\\n0 bytes (static)\" }\n"
      "node: { title: \"gone\" label: \"gone\\nx.c:1:1\\n0 bytes (static)\" }\n"
      "edge: { sourcename: \"x.c:*local\" targetname: \"helper\" }\n"
      "edge: { sourcename: \"function\" targetname: \"x.c:*local\" }\n}\n");
  const ElfFile elf(bytes_);
  const ObjectFacts facts(elf);
  const ObjectMatch match = MatchObject(graph, facts);
  EXPECT_EQ(match.functionOfNode,
            (std::vector{facts.Find("local"), facts.Find("function"), ObjectMatch::kNone}));
  EXPECT_EQ(match.functionsWithoutNode, std::vector{facts.Find("label")});
  ASSERT_EQ(match.hiddenCalls.size(), 2U);
  EXPECT_EQ(match.hiddenCalls[0].node, 1U);
  EXPECT_EQ(match.hiddenCalls[1].node, ObjectMatch::kNone);
  EXPECT_EQ(facts.Calls()[match.hiddenCalls[1].call].target, "helper");
}

}  // namespace
}  // namespace velkor
