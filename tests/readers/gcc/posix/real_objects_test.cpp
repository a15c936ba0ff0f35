#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

#include "platform/temporary_folder.h"
#include "readers/gcc/call_frames.h"
#include "readers/gcc/object_match.h"

namespace velkor {
namespace {

namespace fs = std::filesystem;

std::string BytesOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// What a call graph file and its object say of one another.
struct Comparison {
  explicit Comparison(const fs::path& callGraph)
      : graphBytes(BytesOf(callGraph)),
        objectBytes(BytesOf(fs::path(callGraph).replace_extension(".o"))) {
    EXPECT_TRUE(graph.isWhole) << callGraph;
    EXPECT_TRUE(elf.Faults().IsEmpty() && frames.Faults().IsEmpty() && facts.Faults().IsEmpty())
        << callGraph;
    for (size_t i = 0; i < graph.nodes.size(); ++i) {
      const CallGraphNode& node = graph.nodes[i];
      if (node.shape == CallGraphNode::Shape::kFunction) {
        Compare(node, match.functionOfNode[i]);
      }
    }
    for (const ObjectMatch::HiddenCall& hidden : match.hiddenCalls) {
      hiddenCalls.emplace_back(facts.Calls()[hidden.call].target);
    }
  }

  void Compare(const CallGraphNode& node, uint32_t number) {
    ASSERT_NE(number, ObjectMatch::kNone) << node.title;
    const ObjectFunction& function = facts.Functions()[number];
    const FunctionFrame* frame = frames.Find(function.section, function.address);
    ASSERT_NE(frame, nullptr) << node.title;
    EXPECT_TRUE(frame->isWhole) << node.title;
    EXPECT_EQ(node.isQualified, function.reach != FunctionReach::kGlobal) << node.title;
    if (frame->bytes > node.bytes) {
      largerFrames.emplace_back(node.symbol);
    } else if (node.frame == CallGraphNode::Frame::kStatic) {
      EXPECT_EQ(frame->bytes, node.bytes) << node.title;
    }
  }

  std::string graphBytes;
  std::string objectBytes;
  CallGraphFile graph = ReadCallGraph(graphBytes);
  ElfFile elf{objectBytes};
  CallFrames frames{elf};
  ObjectFacts facts{elf};
  ObjectMatch match = MatchObject(graph, facts);
  std::vector<std::string> largerFrames;
  std::vector<std::string> hiddenCalls;
};

constexpr const char* kSource =
    "int other(int*);\n"
    "static __attribute__((noinline)) int half(int a) { int b[20]; return other(b) + a; }\n"
    "__attribute__((weak, noinline)) int weak(int a) { int b[4]; return other(b) * half(a); }\n"
    "int sum(int n, ...) {\n"
    "  __builtin_va_list list; __builtin_va_start(list, n);\n"
    "  int b[2] = {__builtin_va_arg(list, int), n}; return other(b); }\n"
    "int assembled(int a) { int b[8]; a += other(b); __asm__ volatile(CALL); return a + other(b); "
    "}\n"
    "int last(int a) { return half(a) ? other(&a) : weak(a); }\n";

struct RealCompiler {
  std::string command;
  std::string call;  // by inline assembler
  std::vector<std::string> largerFrames;
};

// So that another format of a new compiler shows.
TEST(RealObjects, OfTheCompilersOfThisMachine) {
  const RealCompiler kCompilers[] = {
      {"gcc -O2", "call unseen", {}},
      {"arm-none-eabi-gcc -Os -mcpu=cortex-m4 -mthumb -ffunction-sections", "bl unseen", {"sum"}},
      {"arm-none-eabi-gcc -O2 -mcpu=arm926ej-s -marm", "bl unseen", {"sum"}},
      {"riscv64-unknown-elf-gcc -Os -march=rv32imac -mabi=ilp32", "call unseen", {}},
  };
  const testing::TemporaryFolder folder;
  folder.Put("s.c", kSource);
  int compiled = 0;
  for (const RealCompiler& compiler : kCompilers) {
    const std::string options = " -g -fomit-frame-pointer -fcallgraph-info=su,da -c s.c -o s.o";
    const std::string command =
        compiler.command + options + " '-DCALL=\"" + compiler.call + "\"' 2>/dev/null";
    if (std::system(command.c_str()) != 0) {  // NOLINT(concurrency-mt-unsafe): one thread
      continue;
    }
    ++compiled;
    const Comparison comparison(folder / "s.ci");
    EXPECT_EQ(comparison.graph.nodes.size(), 6U) << compiler.command;
    EXPECT_EQ(comparison.largerFrames, compiler.largerFrames) << compiler.command;
    EXPECT_EQ(comparison.hiddenCalls, std::vector<std::string>{"unseen"}) << compiler.command;
    EXPECT_TRUE(comparison.match.functionsWithoutNode.empty()) << compiler.command;
    EXPECT_TRUE(comparison.facts.Compiler().starts_with("GCC")) << compiler.command;
  }
  EXPECT_GT(compiled, 0);
}

// Whole programs, which not every checkout has beside it.
TEST(RealObjects, OfThePrograms) {
  const fs::path corpus = fs::path(VELKOR_SOURCE_DIR).parent_path() / "shared/corpus/gcc";
  if (!fs::exists(corpus)) {
    GTEST_SKIP() << corpus << " is not there";
  }
  std::vector<std::string> larger;
  int count = 0;
  for (const char* name : {"lua/arm", "lua/native", "littlefs/arm", "littlefs/native"}) {
    for (const auto& entry : fs::directory_iterator(corpus / name)) {
      if (entry.path().extension() == ".ci") {
        ++count;
        const Comparison one(entry.path());
        larger.insert(larger.end(), one.largerFrames.begin(), one.largerFrames.end());
        EXPECT_TRUE(one.hiddenCalls.empty() && one.match.functionsWithoutNode.empty());
      }
    }
  }
  EXPECT_EQ(count, 72);
  EXPECT_EQ(larger.size(), 5U);  // ARM's functions with a variable number of arguments
}

}  // namespace
}  // namespace velkor
