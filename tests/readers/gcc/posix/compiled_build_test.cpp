#include <cstdlib>
#include <set>

#include "platform/temporary_folder.h"
#include "readers/gcc/build_folder.h"

namespace velkor {
namespace {

using testing::BuildFolder;
namespace fs = std::filesystem;

// The compilers of this machine, on own sources.
struct Source {
  std::string name;
  std::string text;
};

const std::vector<Source> kSources = {
    {"a.c",
     "int ext(int*);\n"
     "static __attribute__((noinline)) int helper(int x) { volatile int b[10]; b[0] = x; return "
     "ext((int*)b) + 1; }\n"
     "__attribute__((weak, noinline)) int replaced(int x) { volatile int b[100]; b[0] = x; return "
     "b[0] + helper(x); }\n"
     "__attribute__((weak, noinline)) int alone(int x) { volatile int b[20]; b[0] = x; return b[0] "
     "+ helper(x); }\n"
     "__attribute__((noinline)) int aliased(int x) { return helper(x) + 2; }\n"
     "int alias(int x) __attribute__((alias(\"aliased\")));\n"
     "int main(void) { int x = 3; return replaced(1) + alone(2) + alias(4) + ext(&x); }\n"},
    {"b.c",
     "static __attribute__((noinline)) int helper(int x) { volatile int b[50]; b[0] = x; return "
     "b[0]; }\n"
     "int ext(int* x) { return helper(*x) + 1; }\n"
     "int replaced(int x) { volatile int b[300]; b[0] = x; return b[0] + 1; }\n"
     "__attribute__((naked)) void bare(void) { __asm__(CALL); }\n"
     "static int inTable(int x) { return x + 1; }\n"
     "int (*const table[])(int) = {inTable, ext};\n"
     "static int inCode(int x) { return x - 1; }\n"
     "int (*taken(void))(int) { return inCode; }\n"},
    {"twice.h",
     "template <class T> __attribute__((noinline)) T twice(T x) { volatile T b[30]; b[0] = x; "
     "return b[0] * 2; }\n"},
    {"x.cpp",
     "#include \"twice.h\"\n"
     "struct B { virtual int f(int); virtual ~B(); };\n"
     "struct C { virtual int g(int); };\n"
     "struct D : B, C { int g(int) override; };\n"
     "int D::g(int x) { return twice<int>(x) + 3; }\n"
     "int useX(int x) { return twice<int>(x) + 1; }\n"},
    {"y.cpp",
     "#include \"twice.h\"\n"
     "int useY(int x) { return twice<int>(x) + 5; }\n"},
    {"s.s", ".text\n.globl start\nstart:\nnop\nCALLMAIN\n"}};

struct Compiler {
  std::string prefix;
  std::string flags;
  std::string call;
};

bool Compile(const testing::TemporaryFolder& folder, const Compiler& compiler) {
  for (const Source& source : kSources) {
    std::string text = source.text;
    if (const size_t mark = text.find("CALLMAIN"); mark != std::string::npos) {
      text.replace(mark, 8, compiler.call + " main");
    }
    folder.Put(source.name, text);
    if (source.name.ends_with(".h")) {
      continue;
    }
    const std::string command = compiler.prefix + (source.name.ends_with("cpp") ? "g++ " : "gcc ") +
                                compiler.flags + " -fcallgraph-info=su,da '-DCALL=\"" +
                                compiler.call + " ext\"' -c " + source.name + " 2>/dev/null";
    if (std::system(command.c_str()) != 0) {  // NOLINT(concurrency-mt-unsafe): one thread
      return false;
    }
  }
  return true;
}

void CheckLinking(BuildFolder& build) {
  EXPECT_TRUE(build.notWhole.empty());
  // Weak ones: one is replaced, one is not.
  EXPECT_FALSE(build["a.c#replaced"].Is(FN_GLOBAL));
  EXPECT_GT(build["a.c#replaced"].frameSize, 400U);
  EXPECT_GE(build["replaced"].frameSize, 1200U);
  EXPECT_EQ(build.CalleesOf("main"), "alias alone ext replaced");
  EXPECT_EQ(build.CalleesOf("alone"), "a.c#helper");
  EXPECT_EQ(build.CalleesOf("a.c#helper"), "ext");
  EXPECT_EQ(build.CalleesOf("ext"), "b.c#helper");
  // Another name of a function.
  EXPECT_EQ(build["alias"].frameSize, 0U);
  EXPECT_EQ(build.CalleesOf("alias"), "aliased");
  EXPECT_EQ(build["alias"].totalStackSize, build["aliased"].totalStackSize);
  // A naked function that calls.
  EXPECT_TRUE(build["bare"].Is(FN_SIZE_UNKNOWN));
  EXPECT_EQ(build.CalleesOf("bare"), "ext");
  EXPECT_EQ(build.CountNotes("bare calls ext"), 1U);
  // One instance that two units tell.
  EXPECT_GE(build["int twice<int>(int)"].frameSize, 120U);
  EXPECT_EQ(build.CalleesOf("useX(int)"), "int twice<int>(int)");
  EXPECT_EQ(build.CalleesOf("useY(int)"), "int twice<int>(int)");
  EXPECT_EQ(build.CalleesOf("D::g(int)"), "int twice<int>(int)");
  // Its thunk.
  EXPECT_NE(build.CalleesOf("non-virtual thunk to D::g(int)"), "");
  EXPECT_FALSE(build["non-virtual thunk to D::g(int)"].Is(FN_SIZE_UNKNOWN));
  // An assembler source.
  EXPECT_TRUE(build["start"].Is(FN_SIZE_UNKNOWN));
  EXPECT_EQ(build.CalleesOf("start"), "main");
  EXPECT_EQ(build.CountNotes("from an assembler"), 1U);
  EXPECT_FALSE(build["main"].Is(FN_ROOT));
  // What only pointers lead to.
  for (const char* name : {"b.c#inTable", "b.c#inCode", "D::g(int)", "ext"}) {
    EXPECT_TRUE(build[name].Is(FN_ADDRESS_TAKEN)) << name;
  }
  for (const char* name : {"b.c#helper", "taken", "useX(int)", "start", "main"}) {
    EXPECT_FALSE(build[name].Is(FN_ADDRESS_TAKEN)) << name;
  }
  EXPECT_EQ(build.bounds->State(build["main"]), BoundState::kBounded);
}

TEST(GccInput, LinksWhatTheCompilersOfThisMachineWrite) {
  const Compiler kCompilers[] = {
      {"", "-O2 -fno-ipa-icf -fno-pic", "call"},
      {"arm-none-eabi-", "-Os -mcpu=cortex-m4 -mthumb -ffunction-sections -fno-ipa-icf", "bl"}};
  int compiled = 0;
  for (const Compiler& compiler : kCompilers) {
    SCOPED_TRACE(compiler.prefix);
    const testing::TemporaryFolder folder;
    if (!Compile(folder, compiler)) {
      continue;
    }
    ++compiled;
    BuildFolder build;
    build.PutAll(folder.Path());
    ASSERT_TRUE(build.Analyse());
    CheckLinking(build);

    // With a program, what is not in it is left out.
    const std::string link =
        compiler.prefix + "gcc -nostdlib -static -Wl,-e,start a.o b.o s.o -o prog 2>/dev/null";
    ASSERT_EQ(std::system(link.c_str()), 0);  // NOLINT(concurrency-mt-unsafe): one thread
    BuildFolder linked;
    linked.PutAll(folder.Path());
    linked.Put("velkor.toml", "input = \"/b\"\nelf = \"prog\"\n");
    ASSERT_TRUE(linked.Analyse("/b/velkor.toml"));
    EXPECT_EQ(linked.CountNotes("are not in the program and are left out"), 1U);
    std::set<std::string> names;
    for (const StkFunction* each : linked.functions->Functions()) {
      names.insert(linked.NameOf(*each));
    }
    EXPECT_EQ(names, (std::set<std::string>{"a.c#helper", "alias", "aliased", "alone", "b.c#helper",
                                            "b.c#inCode", "b.c#inTable", "bare", "ext", "main",
                                            "replaced", "start", "taken"}));
    EXPECT_TRUE(linked["start"].Is(FN_ENTRY));
    EXPECT_EQ(linked.CalleesOf("main"), "alias alone ext replaced");

    // Without objects nothing tells weak from static, and nothing shows that a call is missing.
    fs::remove(folder / "s.o");
    BuildFolder bare;
    for (const auto& entry : fs::directory_iterator(folder.Path())) {
      if (entry.path().extension() == ".ci") {
        bare.Put(entry.path().filename().string(), folder.Get(entry.path().filename().string()));
      }
    }
    ASSERT_TRUE(bare.Analyse());
    EXPECT_EQ(bare.CalleesOf("main"), "[alias] a.c#alone ext a.c#replaced replaced");
    EXPECT_EQ(bare.CountNotes("the machine is not known"), 1U);
  }
  EXPECT_GT(compiled, 0);
}

TEST(ProgramFacts, WhatIsHandedToACreatorOfTasksMayBeOne) {
  int compiled = 0;
  for (const std::string compiler : {"gcc -O1 -fno-pic", "gcc -O1 -fPIC -ffunction-sections",
                                     "arm-none-eabi-gcc -Os -mcpu=cortex-m4 -mthumb",
                                     "arm-none-eabi-gcc -O2 -mcpu=cortex-m33 -mthumb"}) {
    const testing::TemporaryFolder folder;
    folder.Put("a.c",
               "void xTaskCreate(void (*task)(void*), int* stack);\n"
               "void call(void (*callback)(void*));\nvoid other(void*);\nextern int data[];\n"
               "static void task(void* p) { data[1] = 1; }\n"
               "static void callback(void* p) { data[2] = 1; }\n"
               "void start(void) { xTaskCreate(task, data); xTaskCreate(other, data); }\n"
               "void register_it(void) { call(callback); }\n");
    folder.Put("b.c", "void other(void* p) {}\n");
    const std::string command = "cd " + folder.Path() + " && for f in a b; do " + compiler +
                                " -fcallgraph-info=su,da -c $f.c 2>/dev/null || exit 1; done";
    if (std::system(command.c_str()) != 0) {  // NOLINT(concurrency-mt-unsafe): one thread
      continue;
    }
    ++compiled;
    BuildFolder build;
    build.PutAll(folder.Path());
    ASSERT_TRUE(build.Analyse());
    std::vector<std::string> tasks;
    for (const ProgramFacts::Task& task : build.input->Facts().tasks) {
      tasks.push_back(build.NameOf(*build.functions->Functions()[task.function]) + " by " +
                      task.creator);
    }
    EXPECT_EQ(tasks, (std::vector<std::string>{"a.c#task by start", "other by start"})) << compiler;
  }
  EXPECT_GT(compiled, 0);
}

}  // namespace
}  // namespace velkor
