#include <algorithm>
#include <capstone/capstone.h>
#include <gtest/gtest.h>
#include <initializer_list>
#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "readers/gcc/code/a64_translation.h"
#include "readers/gcc/code/arm_translation.h"
#include "readers/gcc/code/capstone_session.h"
#include "readers/gcc/code/program_code.h"
#include "readers/gcc/code/thumb_direct.h"
#include "readers/gcc/elf_image.h"

namespace velkor {
namespace {

using testing::ElfImage;
using Halves = std::vector<uint16_t>;
using Words = std::vector<uint32_t>;

// Of one function.
FunctionCode CodeOf(uint16_t machine, const std::string& code) {
  const bool isThumb = machine == ELF_ARM;
  ElfImage image(machine, !isThumb, ByteOrder::kLittle, true);
  const uint32_t section = image.AddCode(".text", code, 0x8000);
  image.AddSymbol(isThumb ? "$t" : "$x", 0, section, 0x8000);
  image.AddSymbol("f", ElfImage::kGlobalFunction, section, isThumb ? 0x8001 : 0x8000, code.size());
  const std::string bytes = image.Build();
  const ElfFile elf(bytes);
  const ObjectFacts facts(elf);
  const CallFrames frames(elf);
  return ProgramCode(elf, facts, frames).Functions().front().code;
}

// Of Thumb.
FunctionCode CodeOf(const Halves& halves) {
  testing::Image code;
  for (const uint16_t half : halves) {
    code.Half(half);
  }
  return CodeOf(ELF_ARM, code.bytes);
}

// Of AArch64, between what makes a frame of 16 bytes, takes it back and returns.
FunctionCode CodeOf(const Words& words) {
  testing::Image code;
  code.Word(0xA9BF7BFD).Word(0x910003FD);  // stp x29, x30, [sp, #-16]!; mov x29, sp
  for (const uint32_t word : words) {
    code.Word(word);
  }
  code.Word(0xA8C17BFD).Word(0xD65F03C0);  // ldp x29, x30, [sp], #16; ret
  return CodeOf(ELF_AARCH64, code.bytes);
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

// What is read without the disassembler is what that would tell.
TEST(InstructionForms, ReadDirectlyAreThoseThatCapstoneTells) {
  constexpr uint64_t kOrigin = 0x1000000;
  CapstoneSession session(CS_ARCH_ARM,
                          static_cast<cs_mode>(CS_MODE_THUMB | CS_MODE_V8 | CS_MODE_MCLASS));
  std::mt19937 random(1);  // NOLINT(cert-msc51-cpp): the same ones each time
  int calls = 0;
  int jumps = 0;
  for (int i = 0; i < 100000; ++i) {
    const auto word = static_cast<uint32_t>(random());
    const auto first =
        static_cast<uint16_t>(i % 2 == 0 ? 0xF000U | (word >> 16 & 0x7FFU) : word >> 16);
    const auto second = static_cast<uint16_t>(word);
    const std::optional<CodeInstruction> direct = DirectThumb(first, second);
    if (!direct) {
      continue;
    }
    const testing::Image code = testing::Image().Half(first).Half(second);
    const cs_insn* decoded = session.Decode(code.bytes, kOrigin);
    ASSERT_NE(decoded, nullptr) << std::hex << first << ' ' << second;
    CodeInstruction told = TranslateArm(*decoded, kOrigin, true);
    EXPECT_EQ(told.length, 4);
    told.length = 0;
    ASSERT_EQ(*direct, told) << std::hex << first << ' ' << second;
    calls += direct->operation == CodeOperation::kCall ? 1 : 0;
    jumps += direct->operation == CodeOperation::kJump ? 1 : 0;
  }
  EXPECT_GT(calls, 5000);
  EXPECT_GT(jumps, 5000);
}

TEST(InstructionForms, OfA64AreReadFromTheirEncodings) {
  struct Case {
    const char* name;
    Words words;
    uint64_t bytes = 16;
    size_t sites = 0;
    bool isDynamic = false;
    bool usesFloatingPoint = false;
  };
  const std::vector<Case> kCases = {
      {"sub and add sp, #1, lsl #12", {0xD14007FF, 0x914007FF}, 16 + 4096},
      {"str and ldr x19 that change sp", {0xF81F0FF3, 0xF84107F3}, 32},
      {"sub sp, sp, x12 with movk", {0xD28A000C, 0xF2A0002C, 0xCB2C63FF, 0x910003BF}, 86032},
      {"stp and ldp q8, q9", {0xADBF27E8, 0xACC127E8}, 48, 0, false, true},
      {"ld1 that takes 64 bytes back", {0xD10103FF, 0x4CDF23E0}, 80, 0, false, true},
      {"sub x9, sp, #48; and sp, x9, #-64", {0xD100C3E9, 0x927AE53F, 0x910003BF}, 16 + 48 + 48},
      {"sub x9, sp, #24; and sp, x9, #-64", {0xD10063E9, 0x927AE53F, 0x910003BF}, 16 + 24 + 56},
      {"paciasp, xpaci x30, autiasp", {0xD503233F, 0xDAC143FE, 0xD50323BF}},
      {"bti; blr x1; blraa x1, x2", {0xD503245F, 0xD63F0020, 0xD73F0822}, 16, 2},
      {"ldadd, casp, swp, stxr", {0xF8210062, 0x483E7CC4, 0xF82183E2, 0xC8037CA4}},
      {"whilelo, st1d, addvl x1, sp, #2", {0x25E21C20, 0xE5E0E020, 0x043F5041}, 16, 0, false, true},
      {"ldraa x1, [x2, #8]!; stg sp, [sp, #-16]!", {0xF8201C41, 0xD93FFFFF, 0x910043FF}, 32},
      {"sub sp, sp, x0", {0xCB2063FF, 0x910003BF}, 16, 0, true},
      {"eret; brk #1000", {0xD69F03E0, 0xD4207D00}},
  };
  for (const Case& each : kCases) {
    SCOPED_TRACE(each.name);
    const FunctionCode code = CodeOf(each.words);
    EXPECT_EQ(code.doubt, CodeDoubt::kNone) << std::hex << code.doubtAddress;
    EXPECT_EQ(code.codeBytes, each.bytes);
    EXPECT_EQ(code.sites.size(), each.sites);
    EXPECT_EQ(code.isDynamic, each.isDynamic);
    EXPECT_EQ(code.usesFloatingPoint, each.usesFloatingPoint);
  }
  // addvl, eor, irg, sub wsp, addg, ld1 by a register; of another machine; no instruction.
  for (const uint32_t word : {0x043F57FFU, 0xD2401C1FU, 0x9ADF101FU, 0x510043FFU, 0x918103FFU,
                              0x0CC173E0U, 0x80800000U, 0x00010000U}) {
    EXPECT_EQ(CodeOf(Words{word}).doubt, CodeDoubt::kInstruction) << std::hex << word;
  }
  // To another stack, whose place may be kept in disguise: nothing that follows counts.
  for (const Words& words : {Words{0xF9400001, 0x9100003F}, Words{0xD50040BF}, Words{0xD5184200},
                             Words{0xF9400001, 0xF9400402, 0xCA020021, 0x9100003F}}) {
    EXPECT_EQ(CodeOf(words).doubt, CodeDoubt::kNone);
    EXPECT_FALSE(CodeOf(words).isDynamic);
  }
}

// The registers that Capstone knows to be written.
class WrittenOfA64 {
 public:
  WrittenOfA64() {
    EXPECT_EQ(cs_open(CS_ARCH_ARM64, CS_MODE_ARM, &handle_), CS_ERR_OK);
    cs_option(handle_, CS_OPT_DETAIL, CS_OPT_ON);
    decoded_ = cs_malloc(handle_);
  }
  ~WrittenOfA64() {
    cs_free(decoded_, 1);
    cs_close(&handle_);
  }
  WrittenOfA64(const WrittenOfA64&) = delete;
  WrittenOfA64& operator=(const WrittenOfA64&) = delete;

  // Nothing where it knows no such instruction, or tells also what is only read.
  uint64_t Registers(uint32_t word) {
    const testing::Image bytes = testing::Image().Word(word);
    const auto* next = reinterpret_cast<const uint8_t*>(bytes.bytes.data());
    size_t left = bytes.bytes.size();
    uint64_t address = 0x100000000;
    cs_regs read = {};
    cs_regs written = {};
    uint8_t readCount = 0;
    uint8_t writtenCount = 0;
    if (!cs_disasm_iter(handle_, &next, &left, &address, decoded_) || TellsMore() ||
        cs_regs_access(handle_, decoded_, read, &readCount, written, &writtenCount) != CS_ERR_OK) {
      return 0;
    }
    uint64_t registers = 0;
    for (uint8_t i = 0; i < writtenCount; ++i) {
      registers |= Bit(written[i]);
    }
    return registers;
  }
  const char* Text() const { return decoded_->mnemonic; }

 private:
  bool TellsMore() const {
    constexpr unsigned kReading[] = {ARM64_INS_CMP, ARM64_INS_CMN, ARM64_INS_TST, ARM64_INS_MSR,
                                     ARM64_INS_SYS, ARM64_INS_SVC, ARM64_INS_ST1};
    const cs_arm64& a64 = decoded_->detail->arm64;
    const bool changesByNothing = a64.writeback && a64.op_count != 0 &&
                                  ((a64.operands[a64.op_count - 1].type == ARM64_OP_IMM &&
                                    a64.operands[a64.op_count - 1].imm == 0) ||
                                   (a64.operands[a64.op_count - 1].type == ARM64_OP_MEM &&
                                    a64.operands[a64.op_count - 1].mem.disp == 0));
    return changesByNothing ||
           std::find(std::begin(kReading), std::end(kReading), decoded_->id) != std::end(kReading);
  }
  static uint64_t Bit(uint16_t number) {
    if (number >= ARM64_REG_X0 && number <= ARM64_REG_X28) {
      return uint64_t{1} << (number - ARM64_REG_X0);
    }
    if (number >= ARM64_REG_W0 && number <= ARM64_REG_W30) {
      return uint64_t{1} << (number - ARM64_REG_W0);
    }
    const bool isStack = number == ARM64_REG_SP || number == ARM64_REG_WSP;
    return number == ARM64_REG_X29   ? 1U << 29
           : number == ARM64_REG_X30 ? 1U << 30
           : isStack                 ? uint64_t{1} << 31
                                     : 0;
  }

  csh handle_ = 0;
  cs_insn* decoded_ = nullptr;
};

uint64_t RegistersThatChange(const CodeInstruction& instruction) {
  const auto bit = [](uint8_t number) { return number < 64 ? uint64_t{1} << number : 0; };
  const CodeMemory& memory = instruction.memory;
  const bool isCall = instruction.operation == CodeOperation::kCall ||
                      instruction.operation == CodeOperation::kCallRegister;
  return instruction.writes | bit(instruction.target) | bit(instruction.target2) |
         (memory.baseChange != 0 ? bit(memory.base) : 0) | (isCall ? bit(30) : 0);
}

// No register changes that is taken to be kept, as far as the two know the same instructions, and
// the stack pointer in no case where it does not.
TEST(InstructionForms, OfA64WriteWhatAnotherDecoderTells) {
  constexpr uint64_t kStack = uint64_t{1} << 31;
  WrittenOfA64 other;
  std::mt19937 random(1);  // NOLINT(cert-msc51-cpp): the same ones each time
  int compared = 0;
  for (int i = 0; i < 300000; ++i) {
    const auto word =
        static_cast<uint32_t>(random()) | (i % 4 == 0 ? 31U : 0) | (i % 8 == 1 ? 31U << 5 : 0);
    const CodeInstruction instruction = TranslateA64(word);
    const uint64_t written = other.Registers(word);
    if (written == 0 || instruction.operation == CodeOperation::kUnknown) {
      continue;
    }
    const uint64_t changed = RegistersThatChange(instruction);
    ++compared;
    ASSERT_EQ(written & ~changed, 0U) << std::hex << word << ' ' << other.Text();
    ASSERT_EQ(changed & ~written & kStack, 0U) << std::hex << word << ' ' << other.Text();
  }
  EXPECT_GT(compared, 30000);
}

}  // namespace
}  // namespace velkor
