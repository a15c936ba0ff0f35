#include <cstdlib>

#include "platform/temporary_folder.h"
#include "readers/gcc/build_folder.h"

namespace velkor {
namespace {

using testing::BuildFolder;

constexpr const char* kLibraryCaller =
    "#include <stdio.h>\n#include <stdlib.h>\n#include <string.h>\n"
    "int assembled(int); double half(double a) { return a / 2; }\n"
    "static int order(const void* a, const void* b) { return *(int*)a - *(int*)b; }\n"
    "void sorted(int* a, int n) { qsort(a, n, sizeof *a, order); }\n"
    "char copy(char* to, const char* from) { memcpy(to, from, strlen(from)); return *to; }\n"
    "int main(int count, char** texts) {\n"
    "  int a[9] = {count, assembled(count)}; sorted(a, 9); char b[90]; copy(b, *texts);\n"
    "  return printf(\"%d %s %f\\n\", a[3], b, half(a[4])); }\n";
constexpr const char* kAssembler =
    ".syntax unified\n.cpu cortex-m4\n.thumb\n.text\n.globl assembled\n"
    ".type assembled, %function\nassembled: push {r4-r7, lr}\nsub sp, #20\nbl leafs\n"
    "add sp, #20\npop {r4-r7, pc}\n.size assembled, .-assembled\n"
    ".type leafs, %function\nleafs: push {r3}\npop {r3}\nbx lr\n.size leafs, .-leafs\n";

// What the linker took from libraries, and from assembler sources, is known like the rest.
TEST(LibraryFunctions, AreReadFromTheProgram) {
  const testing::TemporaryFolder folder;
  folder.Put("a.c", kLibraryCaller);
  folder.Put("s.s", kAssembler);
  const char* const kCommand =
      "(arm-none-eabi-gcc -O2 -mcpu=cortex-m4 -mthumb -fcallgraph-info=su,da -c a.c && "
      "arm-none-eabi-gcc -mcpu=cortex-m4 -mthumb -c s.s && arm-none-eabi-gcc -mcpu=cortex-m4 "
      "-mthumb --specs=nosys.specs a.o s.o -o prog) 2>messages";
  if (std::system(kCommand) != 0) {  // NOLINT(concurrency-mt-unsafe): one thread
    GTEST_SKIP() << "cannot be compiled here: " << folder.Get("messages");
  }
  BuildFolder build;
  build.PutAll(folder.Path());
  build.Put("velkor.toml", "input = \"/b\"\nelf = \"prog\"\n");
  ASSERT_TRUE(build.Analyse("/b/velkor.toml"));

  EXPECT_EQ(build["assembled"].frameSize, 40U);
  EXPECT_EQ(build.CalleesOf("assembled"), "s.o#leafs");
  EXPECT_EQ(build["s.o#leafs"].frameSize, 4U);
  EXPECT_EQ(build.CountNotes("from an assembler"), 0U);
  EXPECT_EQ(build.CalleesOf("copy"), "memcpy strlen");
  EXPECT_EQ(build["strlen"].source, FunctionSource::kProgram);
  EXPECT_EQ(build.bounds->State(build["copy"]), BoundState::kBounded);
  EXPECT_EQ(build.CalleesOf("printf"), "_vfprintf_r");
  EXPECT_TRUE(build["_vfprintf_r"].Is(FN_RECURSIVE));
  EXPECT_EQ(build.CountNotes("is not known"), 0U);

  // A place in a library is called through a pointer: it has an address, and a statement settles
  // it.
  const StkFunction& qsort = build["qsort"];
  EXPECT_TRUE(qsort.Is(FN_INDIRECT_CALL));
  ASSERT_NE(qsort.told, nullptr);
  EXPECT_GT(qsort.told->indirectSites.size(), 10U);
  EXPECT_NE(qsort.told->indirectSites.front().address, 0U);
  EXPECT_EQ(build.bounds->State(build["sorted"]), BoundState::kUnbounded);

  EXPECT_TRUE(build["strlen"].Is(FN_NO_FLOATING_POINT));
  EXPECT_TRUE(build["copy"].Is(FN_NO_FLOATING_POINT));
}

}  // namespace
}  // namespace velkor
