#include <gtest/gtest.h>
#include <initializer_list>
#include <string>
#include <vector>

#include "readers/gcc/code/program_code.h"
#include "readers/gcc/elf_image.h"

namespace velkor {
namespace {

using testing::ElfImage;
using Halves = std::vector<uint16_t>;

// Of one function of Thumb.
FunctionCode CodeOf(const Halves& halves) {
  testing::Image code;
  for (const uint16_t half : halves) {
    code.Half(half);
  }
  ElfImage image(ELF_ARM, false, ByteOrder::kLittle, true);
  const uint32_t section = image.AddCode(".text", code.bytes, 0x8000);
  image.AddSymbol("$t", 0, section, 0x8000);
  image.AddSymbol("f", ElfImage::kGlobalFunction, section, 0x8001, code.bytes.size());
  const std::string bytes = image.Build();
  const ElfFile elf(bytes);
  const ObjectFacts facts(elf);
  const CallFrames frames(elf);
  return ProgramCode(elf, facts, frames).Functions().front().code;
}

Halves InFrame(const Halves& halves) {
  Halves framed = {0xB510};  // push {r4, lr}
  framed.insert(framed.end(), halves.begin(), halves.end());
  framed.push_back(0xBD10);  // pop {r4, pc}
  return framed;
}

// What the decoder takes for something else, or for nothing.
TEST(InstructionForms, OfNewerMachinesAreKnown) {
  struct Case {
    const char* name;
    Halves halves;
    uint64_t bytes = 8;
    size_t sites = 0;
    bool usesFloatingPoint = false;
  };
  const std::vector<Case> kInFrame = {
      {"sg", {0xE97F, 0xE97F}},
      {"clrm {r0, r1, apsr}", {0xE89F, 0x8003}},
      {"vstr and vldr fpcxtns", {0xED6D, 0xCF81, 0xECFD, 0xCF81}, 12, 0, true},
      {"blxns r3", {0x479C}, 8, 1},
      {"vlstm r0", {0xEC20, 0x0A00}, 8, 0, true},
      {"vlldm r0", {0xEC30, 0x0A00}, 8, 0, true},
      {"vscclrm {s0-s3, vpr}", {0xEC9F, 0x0A04}, 8, 0, true},
      {"msr psplim, r0", {0xF380, 0x880B}},
      {"mrs r0, psplim", {0xF3EF, 0x800B}},
      {"dls and le around a push", {0xF041, 0xE001, 0xB401, 0xBC01, 0xF00F, 0xC805}, 12},
      {"wls lr, r0", {0xF040, 0xC801, 0xBF00}},
      {"lda r0, [r1]", {0xE8D1, 0x0FAF}},
      {"ldaex r0, [r1]", {0xE8D1, 0x0FEF}},
      {"stl r0, [r1]", {0xE8C1, 0x0FAF}},
      {"stlex r2, r0, [r1]", {0xE8C1, 0x0FE2}},
      {"autg r0, r1, r2", {0xFB51, 0x0F02}},
      {"pacg r0, r1, r2", {0xFB61, 0xF002}},
  };
  for (const Case& each : kInFrame) {
    SCOPED_TRACE(each.name);
    const FunctionCode code = CodeOf(InFrame(each.halves));
    EXPECT_EQ(code.doubt, CodeDoubt::kNone);
    EXPECT_EQ(code.codeBytes, each.bytes);
    EXPECT_EQ(code.sites.size(), each.sites);
    EXPECT_EQ(code.usesFloatingPoint, each.usesFloatingPoint);
    EXPECT_FALSE(code.isDynamic);
  }
  for (const Halves& last : {Halves{0x4774}, Halves{0xFB5E, 0x0F12}}) {  // bxns lr; bxaut of lr
    const FunctionCode code = CodeOf(last);
    EXPECT_EQ(code.doubt, CodeDoubt::kNone);
    EXPECT_TRUE(code.returns);
    EXPECT_TRUE(code.sites.empty());
  }
}

// The stack pointer may only be written in ways that are known.
TEST(InstructionForms, ThatAreNotKnownLeaveTheSizeUnknown) {
  const std::vector<Halves> kUnknown = {
      {0xDEFF, 0xFFFF, 0xFFFF},  // behind a trap
      {0xFFFF, 0xFFFF},          // no instruction
      {0xFA00, 0xFD01},          // lsl.w sp, r0, r1
      {0xEA80, 0x0D01},          // eor.w sp, r0, r1
      {0xF3EF, 0x8D08},          // mrs sp, msp
  };
  for (const Halves& each : kUnknown) {
    EXPECT_EQ(CodeOf(InFrame(each)).doubt, CodeDoubt::kInstruction) << std::hex << each[0];
  }
  // By as much as a register says, and as a register says.
  for (const Halves& each : {Halves{0xEBAD, 0x0D03}, Halves{0x469D}}) {
    EXPECT_TRUE(CodeOf(InFrame(each)).isDynamic || CodeOf(InFrame(each)).doubt != CodeDoubt::kNone)
        << std::hex << each[0];
  }
}

}  // namespace
}  // namespace velkor
