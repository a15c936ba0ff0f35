#include "readers/gcc/call_frames.h"

#include <gtest/gtest.h>

#include "readers/gcc/elf_image.h"
#include "readers/gcc/frame_rows.h"

namespace velkor {
namespace {

using testing::ElfImage;
using testing::Image;

struct Rows {
  std::string_view instructions;
  int64_t largest;
  bool isWhole;
  bool isRead = true;
};

std::string_view Bytes(const char* bytes, size_t length) {
  return {bytes, length};
}
#define BYTES(text) Bytes(text, sizeof(text) - 1)

// From 8 bytes on, with a data factor of -4.
TEST(FrameRows, EveryInstruction) {
  const Rows kCases[] = {
      {"", 8, true},
      {BYTES("\x0E\x20\x41\x0E\x08"), 32, true},  // a row ends where the next begins
      {BYTES("\x0E\x20\x0E\x10"), 16, true},      // never in force
      {BYTES("\x0C\x07\x80\x02"), 256, true},     // def_cfa
      {BYTES("\x12\x07\x70\x13\x78"), 32, true},  // def_cfa_sf, def_cfa_offset_sf
      {BYTES("\x0E\x30\x41\x0D\x06"), 48, true},  // another register
      {BYTES("\x0E\x20\x41\x0A\x0E\x08\x41\x0B\x42\x0E\x10"), 32, true},  // remember, restore
      {BYTES("\x41\x0F\x02\x91\x10\x41\x0C\x07\x10"), 16, false},         // an expression
      {BYTES("\x41\x0F\x02\x91\x10\x41\x0D\x06\x0E\x18"), 24, false},
      {BYTES("\x01"
             "abcd"
             "\x02\x10\x03\x10\x10\x04\x10\x10\x10\x10\x1D"
             "12345678"
             "\x0E\x18"),
       24, true},
      {BYTES("\x05\x85\x01\x02\x06\x05\x07\x05\x08\x05\x09\x05\x06\x8E\x01\xC5\x0E\x18"), 24, true},
      {BYTES(
           "\x10\x05\x02\x0E\x7F\x11\x05\x7F\x14\x05\x7F\x15\x05\x7F\x16\x05\x02\x0E\x7F\x0E\x18"),
       24, true},
      {BYTES("\x2C\x2D\x2E\x40\x2F\x05\x02\x0E\x18"), 24, true},
      {BYTES("\x0E\x18\x41\x17\x0E\x40"), 24, false, false},  // no such instruction
      {BYTES("\x0E\x18\x41\x0E\x80"), 24, false, false},      // cut
      {BYTES("\x0E\x18\x41\x0B\x0E\x40"), 24, false, false},  // nothing remembered
      {BYTES("\x0E\x18\x41\x0F\x7F\x01"), 24, false, false},  // an expression that is cut
      {BYTES("\x0E\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x01"), int64_t{1} << 62, true},
      {BYTES("\x13\x04"), 0, true},  // in front of the frame address
  };
  const FrameEncoding encoding{ByteOrder::kLittle, 4, -4};
  for (const Rows& one : kCases) {
    const auto number = &one - kCases;
    const FrameRows rows =
        RunFrameInstructions(one.instructions, encoding, {8, FrameOffset::Kind::kBytes});
    EXPECT_EQ(rows.largest, one.largest) << number;
    EXPECT_EQ(rows.isWhole, one.isWhole) << number;
    EXPECT_EQ(rows.isRead, one.isRead) << number;
  }
  // Some assemblers begin with a register alone.
  EXPECT_TRUE(RunFrameInstructions("\x0D\x02", encoding, {}).isWhole);
  EXPECT_FALSE(RunFrameInstructions("\x41", encoding, {}).isWhole);
}

// An entry with its length before it.
std::string Entry(ByteOrder order, std::string body, bool isLong = false) {
  body.resize((body.size() + 3) / 4 * 4, '\0');
  Image entry(order);
  isLong ? entry.Word(0xFFFFFFFF).Number(body.size(), 8)
         : entry.Word(static_cast<uint32_t>(body.size()));
  return entry.Raw(body).bytes;
}

// "zR" with 4 bytes from itself, or as the exception tables of C++ have it: "zPLR".
std::string ExceptionCommon(std::string_view letters, std::string_view data) {
  Image common;
  common.Word(0).Number(1, 1).Text(letters).Raw("\x01\x78\x10");
  common.Number(data.size(), 1).Raw(data).Raw("\x0C\x07\x08\x90\x01");
  return Entry(ByteOrder::kLittle, common.bytes);
}

std::string ExceptionFunction(size_t position, uint32_t address, std::string_view instructions) {
  Image function;
  function.Word(static_cast<uint32_t>(position + 4)).Word(address).Word(0x10).Number(0, 1);
  return Entry(ByteOrder::kLittle, function.Raw(instructions).bytes);
}

// With a section for each function every address in it is 0: only the relocation tells whose.
TEST(CallFrames, OfAnObjectComeByRelocation) {
  ElfImage image(ELF_X86_64, true);
  const uint32_t f = image.AddCode(".text.f", "code");
  const uint32_t g = image.AddCode(".text.g", "code");
  const std::string common = ExceptionCommon("zPLR", BYTES("\x9B\x00\x00\x00\x00\x1B\x1B"));
  const std::string first = ExceptionFunction(common.size(), 0, "\x41\x0E\x20\x41\x0E\x08");
  const std::string second = ExceptionFunction(common.size() + first.size(), 0, "\x41\x0E\x70");
  const uint32_t frames =
      image.Add({".eh_frame", 1, 2, common + first + second + std::string(4, '\0')});
  const uint32_t inF = image.AddSymbol("", 3, f);
  const uint32_t inG = image.AddSymbol("", 3, g);
  image.AddRelocation(frames, common.size() + 8, 2, inF);
  image.AddRelocation(frames, common.size() + first.size() + 8, 2, inG, 2);
  const std::string bytes = image.Build();
  const CallFrames read((ElfFile(bytes)));
  EXPECT_TRUE(read.Faults().IsEmpty());
  ASSERT_NE(read.Find(f, 0), nullptr);
  EXPECT_EQ(read.Find(f, 0)->bytes, 32U);
  ASSERT_NE(read.Find(g, 2), nullptr);
  EXPECT_EQ(read.Find(g, 2)->bytes, 112U);
  EXPECT_EQ(read.Find(g, 0), nullptr);
}

TEST(CallFrames, OfAProgramComeByAddress) {
  ElfImage image(ELF_X86_64, true, ByteOrder::kLittle, true);
  const std::string common = ExceptionCommon("zR", "\x1B");
  const std::string function = ExceptionFunction(
      common.size(), 0x1000U - 0x2000U - static_cast<uint32_t>(common.size() + 8), "\x41\x0E\x20");
  image.Add({".eh_frame", 1, 2, common + function, 0, 0, 0, 0x2000});
  const std::string bytes = image.Build();
  const CallFrames read((ElfFile(bytes)));
  ASSERT_EQ(read.Frames().size(), 1U);
  EXPECT_EQ(read.Find(0, 0x1000)->bytes, 32U);
}

struct DebugForm {
  ByteOrder order;
  uint8_t version;
  bool isLong;
};

// Two entries for one function: the larger counts. The common entry is found by its place.
TEST(CallFrames, OfDebugInformationInAllForms) {
  for (const DebugForm form :
       {DebugForm{ByteOrder::kLittle, 1, false}, DebugForm{ByteOrder::kBig, 3, false},
        DebugForm{ByteOrder::kBig, 4, true}}) {
    const size_t width = form.isLong ? 8 : 4;
    Image body(form.order);
    body.Number(UINT64_MAX, width).Number(form.version, 1).Text("");
    body.Raw(form.version == 4 ? BYTES("\x04\x00") : "").Raw(BYTES("\x02\x7C\x0E\x0C\x0D\x00"));
    const std::string common = Entry(form.order, body.bytes, form.isLong);
    std::string section = common;
    for (const std::string_view instructions :
         {BYTES("\x41\x0E\x18"), BYTES("\x41\x0E\x28"), BYTES("\x41\x0E\x10")}) {
      Image function(form.order);
      function.Number(0, width).Word(0x40).Word(8).Raw(instructions);
      section += Entry(form.order, function.bytes, form.isLong);
    }
    ElfImage image(ELF_ARM, false, form.order);
    const uint32_t code = image.AddCode(".text", std::string(100, 'c'));
    const uint32_t frames = image.Add({".debug_frame", 1, 0, section});
    const uint32_t symbol = image.AddSymbol("", 3, code);
    const size_t size = (section.size() - common.size()) / 3;
    for (size_t i = 0; i < 3; ++i) {
      const size_t start = common.size() + i * size + (form.isLong ? 12 : 4);
      image.AddRelocation(frames, start + width, 2, symbol);
    }
    const std::string bytes = image.Build();
    const CallFrames read((ElfFile(bytes)));
    EXPECT_TRUE(read.Faults().IsEmpty());
    ASSERT_EQ(read.Frames().size(), 1U);
    ASSERT_NE(read.Find(code, 0x40), nullptr);
    EXPECT_EQ(read.Find(code, 0x40)->bytes, 40U);
  }
}

TEST(CallFrames, SayWhatIsNotUsable) {
  const std::string common = ExceptionCommon("zR", "\x1B");
  const std::string function = ExceptionFunction(common.size(), 0x100, "\x41\x0E\x20");
  struct Case {
    BinaryFault fault;
    std::string bytes;
  };
  const Case kCases[] = {
      {BinaryFault::kFrameEntryCut, common + function.substr(0, function.size() - 1)},
      {BinaryFault::kFrameEntryCut, common + "ab"},
      {BinaryFault::kFrameEntryCut, Image().Word(0xFFFFFFFF).Number(UINT64_MAX, 8).bytes},
      {BinaryFault::kFrameCommonMissing, ExceptionFunction(40, 0x100, "")},
      {BinaryFault::kFrameEntryKind, ExceptionCommon("aX", "\x1B")},
      {BinaryFault::kFrameAddress,
       ExceptionCommon("zR", "\x8B") + ExceptionFunction(common.size(), 0x100, "\x41")},
      {BinaryFault::kFrameInstruction,
       common + ExceptionFunction(common.size(), 0x100, "\x41\x3F")},
  };
  for (const Case& one : kCases) {
    ElfImage image(ELF_X86_64, true, ByteOrder::kLittle, true);
    image.Add({".eh_frame", 1, 2, one.bytes, 0, 0, 0, 0x2000});
    const std::string bytes = image.Build();
    const CallFrames read((ElfFile(bytes)));
    ASSERT_EQ(read.Faults().Entries().size(), 1U) << TextOf(one.fault);
    EXPECT_EQ(read.Faults().Entries()[0].fault, one.fault);
    EXPECT_EQ(read.Faults().Entries()[0].section, ".eh_frame");
  }
  ElfImage image(ELF_ARM, false);
  image.Add({".debug_frame", 1, 0x800, "anything"});
  const std::string bytes = image.Build();
  const CallFrames read((ElfFile(bytes)));
  EXPECT_TRUE(read.Faults().Has(BinaryFault::kCompressed));
  EXPECT_EQ(TextOf(read.Faults().Entries()[0]), "section .debug_frame: it is compressed");
}

}  // namespace
}  // namespace velkor
