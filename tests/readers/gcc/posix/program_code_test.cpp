#include "readers/gcc/code/program_code.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <initializer_list>
#include <map>
#include <set>
#include <span>

#include "platform/temporary_folder.h"
#include "readers/gcc/call_graph_file.h"

namespace velkor {
namespace {

namespace fs = std::filesystem;

std::string ProgramBytes(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// What the instructions of a program tell, beside what its compiler told.
class Proof {
 public:
  Proof(const fs::path& program, const fs::path& folder) : bytes_(ProgramBytes(program)) {
    for (uint32_t i = 0; i < code_.Functions().size(); ++i) {
      const ProgramCode::Function& function = code_.Functions()[i];
      for (uint32_t name = 0; name < function.nameCount; ++name) {
        byName_[std::string(facts_.Functions()[function.firstName + name].name)].push_back(i);
      }
    }
    for (const auto& entry : fs::directory_iterator(folder)) {
      if (entry.path().extension() == ".ci") {
        CompareUnit(ProgramBytes(entry.path()));
      }
    }
  }

  int shared = 0;  // functions that both tell of
  int equal = 0;
  std::vector<std::string> above;
  std::vector<std::string> below;
  std::vector<std::string> unknown;
  std::vector<std::string> missedCalls;
  std::vector<std::string> otherSites;     // one of the two finds indirect calls
  std::vector<std::string> otherDynamics;  // one of the two says that the frame is dynamic
  const FunctionCode& CodeOf(const std::string& name) {
    return code_.Functions()[byName_.at(name).front()].code;
  }
  const ProgramCode& Code() const { return code_; }

 private:
  void CompareUnit(const std::string& bytes) {
    const CallGraphFile graph = ReadCallGraph(bytes);
    std::map<std::string_view, std::set<std::string>> targets;
    for (const CallGraphEdge& edge : graph.edges) {
      targets[edge.source].emplace(SymbolOf(graph, edge.target));
    }
    for (const CallGraphNode& node : graph.nodes) {
      const auto found = byName_.find(std::string(node.symbol));
      if (node.shape == CallGraphNode::Shape::kFunction && found != byName_.end() &&
          found->second.size() == 1) {
        Compare(node, targets[node.title], found->second.front());
      }
    }
  }

  void Compare(const CallGraphNode& node, const std::set<std::string>& targets, uint32_t number) {
    const FunctionCode& code = code_.Functions()[number].code;
    const std::string name(node.symbol);
    ++shared;
    if (code.doubt != CodeDoubt::kNone) {
      unknown.push_back(name);
      return;
    }
    const bool isDynamic = node.frame == CallGraphNode::Frame::kDynamic;
    const uint64_t told = std::max(node.bytes, code.callFrameBytes);
    equal += code.codeBytes == told ? 1 : 0;
    if (code.codeBytes > told) {
      above.push_back(name);
    } else if (code.codeBytes < told && !isDynamic) {
      below.push_back(name + " " + std::to_string(code.codeBytes) + " of " + std::to_string(told));
    }
    if (isDynamic != code.isDynamic) {
      otherDynamics.push_back(name);
    }
    CompareCalls(name, targets, number);
  }

  void CompareCalls(const std::string& name, const std::set<std::string>& targets,
                    uint32_t number) {
    const FunctionCode& code = code_.Functions()[number].code;
    std::set<uint32_t> calls = {number};  // a call of itself may have become a loop
    for (const uint32_t call : code.calls) {
      calls.insert({call, code_.Meant(call)});
    }
    const bool isIndirect = targets.contains(std::string(CallGraphFile::kIndirectCall));
    if (isIndirect != !code.sites.empty()) {
      otherSites.push_back(name);
    }
    for (const std::string& target : targets) {
      const auto functions = byName_.find(target);
      const bool isImported = std::ranges::any_of(
          calls, [&](uint32_t i) { return code_.Functions()[i].code.import == target; });
      const bool isFound =
          isImported ||
          (functions != byName_.end() &&
           std::ranges::any_of(functions->second, [&](uint32_t i) { return calls.contains(i); }));
      if (!isFound && target != CallGraphFile::kIndirectCall && target != "absent") {
        missedCalls.push_back(name + " " + target);
      }
    }
  }

  const std::string bytes_;
  const ElfFile elf_{bytes_};
  const ObjectFacts facts_{elf_};
  const CallFrames frames_{elf_};
  const ProgramCode code_{elf_, facts_, frames_};
  std::map<std::string, std::vector<uint32_t>> byName_;
};

using Names = std::vector<std::string>;

struct ProofCompiler {
  const char* command;
  const char* link = "--specs=nosys.specs";
  int equal = 24;
  Names above = {};  // where the compiler tells less than is used
};

const ProofCompiler kProofCompilers[] = {
    {"arm-none-eabi-gcc -Os -mcpu=cortex-m4 -mthumb -mfloat-abi=hard -mfpu=fpv4-sp-d16"},
    {"arm-none-eabi-gcc -O0 -mcpu=cortex-m4 -mthumb"},
    {"arm-none-eabi-gcc -O2 -mcpu=cortex-m0 -mthumb"},
    {"arm-none-eabi-gcc -O0 -mcpu=cortex-m0 -mthumb"},
    {"arm-none-eabi-gcc -Os -mcpu=cortex-m0 -mthumb"},
    {"arm-none-eabi-gcc -O0 -mcpu=cortex-m33 -mthumb -mfloat-abi=hard -mfpu=fpv5-sp-d16"},
    {"arm-none-eabi-gcc -Os -mcpu=cortex-m33 -mthumb"},
    {"arm-none-eabi-gcc -O2 -mcpu=cortex-m33 -mthumb -mfloat-abi=hard -mfpu=fpv5-sp-d16"},
    {"arm-none-eabi-gcc -O2 -mcpu=cortex-m4 -mthumb -fstack-clash-protection"},
    {"arm-none-eabi-gcc -O2 -mcpu=arm926ej-s -marm"},
    // The registers of a variable number of arguments are pushed beside what is told.
    {"arm-none-eabi-gcc -O0 -mcpu=arm926ej-s -marm",
     "--specs=nosys.specs",
     22,
     {"variadic", "by_value"}},
    {"arm-none-eabi-gcc -Os -mcpu=arm7tdmi -mthumb -mthumb-interwork"},
    // Of a dynamic frame more is told than is certain.
    {"gcc -O2", "", 23},
    {"gcc -O0 -fstack-clash-protection", "", 23},
    {"gcc -O2 -fstack-clash-protection -fno-pie -no-pie -fno-plt", "", 23},
};

const ProofCompiler kProofCompilersOfA64[] = {
    {"aarch64-linux-gnu-gcc -O0 -mbranch-protection=standard", ""},
    {"aarch64-linux-gnu-gcc -O2 -fstack-clash-protection", ""},
    {"aarch64-linux-gnu-gcc -Os -march=armv8.3-a -mbranch-protection=pac-ret", ""},
    {"aarch64-linux-gnu-gcc -O3 -fno-plt", ""},
};

const std::string kSampleFolder = VELKOR_SOURCE_DIR "/tests/readers/gcc/code/";

bool Compiles(const std::string& compiler, const std::string& sourcesAndLink) {
  const std::string command =
      compiler + " -g -w -fcallgraph-info=su,da " + sourcesAndLink + " -o program.elf 2>messages";
  return std::system(command.c_str()) == 0;  // NOLINT(concurrency-mt-unsafe): one thread
}

void ExpectNothingLost(const Proof& proof, const Names& above) {
  EXPECT_EQ(proof.above, above);
  EXPECT_EQ(proof.below, Names());
  EXPECT_EQ(proof.unknown, Names());
  EXPECT_EQ(proof.missedCalls, Names());
  EXPECT_EQ(proof.otherSites, Names());
  EXPECT_EQ(proof.otherDynamics, Names());
}

// A program of which each function is difficult in another way, as several compilers make it. The
// number of those that are there.
int ProveSamples(std::span<const ProofCompiler> compilers) {
  const testing::TemporaryFolder folder;
  int compiled = 0;
  for (const ProofCompiler& compiler : compilers) {
    SCOPED_TRACE(compiler.command);
    if (!Compiles(compiler.command, kSampleFolder + "samples.c " + compiler.link)) {
      continue;
    }
    ++compiled;
    Proof proof(folder / "program.elf", folder.Path());
    EXPECT_EQ(proof.shared, 24);
    EXPECT_EQ(proof.equal, compiler.equal);
    ExpectNothingLost(proof, compiler.above);
    EXPECT_FALSE(proof.CodeOf("never").returns);
  }
  return compiled;
}

// Places where exceptions land are reached by nothing that the instructions tell.
int ProveExceptions(std::initializer_list<std::string> compilers) {
  const testing::TemporaryFolder folder;
  const std::string whole = kSampleFolder + "samples.cc";
  const std::string alone = whole + " " + kSampleFolder +
                            "samples_library.cc -nodefaultlibs -nostartfiles -lgcc "
                            "-Wl,--unresolved-symbols=ignore-all,-e,main";
  int compiled = 0;
  for (const std::string& compiler : compilers) {
    SCOPED_TRACE(compiler);
    if (!Compiles(compiler, compiler.starts_with("arm") ? alone : whole)) {
      continue;
    }
    ++compiled;
    const Proof proof(folder / "program.elf", folder.Path());
    EXPECT_GE(proof.shared, 15);
    EXPECT_EQ(proof.equal, proof.shared);
    ExpectNothingLost(proof, Names());
  }
  return compiled;
}

TEST(ProgramCode, ReadsWhatTheCompilerTold) {
  EXPECT_GT(ProveSamples(kProofCompilers), 0);
}

TEST(ProgramCode, ReadsWhereExceptionsLand) {
  EXPECT_GT(
      ProveExceptions(
          {"g++ -Os", "g++ -O0", "g++ -O2", "arm-none-eabi-g++ -Os -mthumb -mcpu=cortex-m4",
           "arm-none-eabi-g++ -O0 -mthumb -mcpu=cortex-m4",
           "arm-none-eabi-g++ -O2 -mthumb -mcpu=cortex-m0",
           "arm-none-eabi-g++ -O2 -mthumb -mcpu=cortex-m33 -mfloat-abi=hard -mfpu=fpv5-sp-d16"}),
      0);
}

TEST(ProgramCode, ReadsWhatTheCompilerToldOfA64) {
  if (ProveSamples(kProofCompilersOfA64) == 0) {
    GTEST_SKIP() << "aarch64-linux-gnu-gcc is not there";
  }
  ProveExceptions({"aarch64-linux-gnu-g++ -O0",
                   "aarch64-linux-gnu-g++ -O2 -march=armv8.3-a -mbranch-protection=standard"});
}

// A whole library, most of it from a compiler, some of it from an assembler.
TEST(ProgramCode, ReadsNoFrameOfA64BelowItsCallFrameInformation) {
  const testing::TemporaryFolder folder;
  if (!Compiles("aarch64-linux-gnu-gcc -O2", kSampleFolder + "samples.c -static")) {
    GTEST_SKIP() << "aarch64-linux-gnu-gcc is not there";
  }
  const Proof proof(folder / "program.elf", folder.Path());
  int known = 0;
  for (const ProgramCode::Function& function : proof.Code().Functions()) {
    const FunctionCode& code = function.code;
    const bool isKnown = code.doubt == CodeDoubt::kNone && code.import.empty();
    known += isKnown ? 1 : 0;
    EXPECT_NE(code.doubt, CodeDoubt::kInstruction) << std::hex << code.doubtAddress;
    EXPECT_TRUE(!isKnown || code.isDynamic || code.codeBytes >= code.callFrameBytes)
        << std::hex << function.address;
  }
  EXPECT_GT(known, 900);
}

// Whole programs, which not every checkout has beside it.
TEST(ProgramCode, ReadsWhatTheCompilerToldOfPrograms) {
  const fs::path corpus = fs::path(VELKOR_SOURCE_DIR).parent_path() / "shared/corpus/gcc";
  if (!fs::exists(corpus)) {
    GTEST_SKIP() << corpus << " is not there";
  }
  for (const char* name : {"lua/arm", "littlefs/arm", "lua/native", "littlefs/native"}) {
    const Proof proof(corpus / name / "prog.elf", corpus / name);
    EXPECT_EQ(proof.equal, proof.shared);
    EXPECT_EQ(proof.below, Names());
    EXPECT_EQ(proof.missedCalls, Names());
    EXPECT_EQ(proof.otherSites, Names());
    EXPECT_EQ(proof.otherDynamics, Names());
  }
}

}  // namespace
}  // namespace velkor
