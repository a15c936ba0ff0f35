#include <gtest/gtest.h>

#include "readers/gcc/build_folder.h"
#include "readers/gcc/elf_image.h"

namespace velkor {
namespace {

using testing::BuildFolder;
using testing::ElfImage;

// Another machine, or other bytes of one, or no names: what is called is unknown as without a
// program, and one note says why.
TEST(LibraryFunctions, StayUnknownWhereNoInstructionsAreRead) {
  struct Case {
    uint16_t machine;
    ByteOrder order;
    bool hasSymbols;
    const char* note;
  };
  for (const Case& each : {Case{ELF_RISCV, ByteOrder::kLittle, true, "of this machine"},
                           Case{ELF_ARM, ByteOrder::kBig, true, "of this machine"},
                           Case{ELF_ARM, ByteOrder::kLittle, false, "stripped"}}) {
    ElfImage image(each.machine, false, each.order, true);
    const uint32_t text = image.AddCode(".text", std::string(16, '\0'), 0x8000);
    if (each.hasSymbols) {
      image.AddSymbol("caller", ElfImage::kGlobalFunction, text, 0x8000, 8);
      image.AddSymbol("called", ElfImage::kGlobalFunction, text, 0x8008, 8);
    }
    BuildFolder build;
    build.Put("a.ci",
              "graph: { title: \"a.c\"\n"
              "node: { title: \"caller\" label: \"caller\\na.c:1:5\\n16 bytes (static)\\n0 "
              "dynamic objects\" }\n"
              "node: { title: \"called\" label: \"called\\n<built-in>\" shape : ellipse }\n"
              "edge: { sourcename: \"caller\" targetname: \"called\" label: \"a.c:1:9\" }\n}\n");
    build.Put("prog", image.Build());
    build.Put("velkor.toml", "input = \"/b\"\nelf = \"prog\"\n");
    ASSERT_TRUE(build.Analyse("/b/velkor.toml"));
    EXPECT_EQ(build.CountNotes(each.note), 1U);
    EXPECT_TRUE(build["[called]"].IsUnknown());
  }
}

}  // namespace
}  // namespace velkor
