#include <gtest/gtest.h>

#include "readers/gcc/build_folder.h"
#include "readers/gcc/elf_image.h"
#include "readers/gcc/program_target.h"

namespace velkor {
namespace {

using testing::BuildFolder;
using testing::CallGraph;
using testing::ElfImage;
using testing::Image;

using Texts = std::vector<std::string>;

constexpr uint8_t kObject = 0x11;
constexpr uint8_t kLabel = 0x10;
constexpr uint32_t kAbsolute = 0xFFF1;

// Numbers by tag, a text where the tag has one.
std::string ArmAttributes(const std::vector<std::pair<uint8_t, uint8_t>>& numbers) {
  Image values;
  values.Number(5, 1).Text("ARM v7E-M");
  for (const auto& [tag, value] : numbers) {
    values.Number(tag, 1).Number(value, 1);
  }
  Image scope;
  scope.Number(1, 1).Word(static_cast<uint32_t>(5 + values.bytes.size())).Raw(values.bytes);
  Image vendor;
  vendor.Word(static_cast<uint32_t>(4 + 6 + scope.bytes.size())).Text("aeabi").Raw(scope.bytes);
  return "A" + vendor.bytes;
}

std::string TargetOfArm(const std::string& attributes) {
  ElfImage image(ELF_ARM, false, ByteOrder::kLittle, true);
  image.Add({".ARM.attributes", 0x70000003, 0, attributes});
  const std::string bytes = image.Build();
  return TargetOf(ElfFile(bytes));
}

TEST(ProgramTarget, IsWhatTheBuildAttributesSay) {
  EXPECT_EQ(TargetOfArm(ArmAttributes({{6, 11}, {7, 'M'}})), "cortex-m0");
  EXPECT_EQ(TargetOfArm(ArmAttributes({{6, 10}, {7, 'M'}})), "cortex-m3");
  EXPECT_EQ(TargetOfArm(ArmAttributes({{6, 10}, {7, 'A'}})), "arm");
  EXPECT_EQ(TargetOfArm(ArmAttributes({{6, 13}, {7, 'M'}})), "cortex-m4");
  EXPECT_EQ(TargetOfArm(ArmAttributes({{6, 13}, {7, 'M'}, {10, 6}})), "cortex-m4f");
  EXPECT_EQ(TargetOfArm(ArmAttributes({{6, 17}, {10, 8}})), "cortex-m33f");
  EXPECT_EQ(TargetOfArm(""), "");
  // Cut anywhere, it is another one or none, and nothing outside is read.
  const std::string whole = ArmAttributes({{6, 13}, {7, 'M'}, {10, 6}});
  for (size_t length = 0; length < whole.size(); ++length) {
    EXPECT_NE(TargetOfArm(whole.substr(0, length)), "cortex-m4f") << length;
  }

  ElfImage image(ELF_RISCV, false);
  Image arch;
  arch.Number(5, 1).Text("rv32i2p1_m2p0_a2p1_c2p0_zicsr2p0_xodd1p0");
  Image scope;
  scope.Number(1, 1).Word(static_cast<uint32_t>(5 + arch.bytes.size())).Raw(arch.bytes);
  Image vendor;
  vendor.Word(static_cast<uint32_t>(4 + 6 + scope.bytes.size())).Text("riscv").Raw(scope.bytes);
  image.Add({".riscv.attributes", 0x70000003, 0, "A" + vendor.bytes});
  const std::string bytes = image.Build();
  EXPECT_EQ(TargetOf(ElfFile(bytes)), "rv32imac");
}

// Functions at 0x1000, 0x1010, and so on; data at 0x20000000.
struct Firmware {
  static constexpr uint32_t kCode = 0x1000;
  static constexpr uint32_t kData = 0x20000000;

  Firmware() {
    code = image.AddCode(".text", std::string(0x100, '\0'), kCode);
    const Texts names = {"Reset_Handler",   "main",           "_wrapper",
                         "UART_IRQHandler", "TIM_IRQHandler", "Default_Handler",
                         "task_rx",         "unlisted"};
    for (uint32_t i = 0; i < names.size(); ++i) {
      image.AddSymbol(names[i], ElfImage::kGlobalFunction, code, Function(i), 16);
    }
    image.AddSymbol("SPI_IRQHandler", ElfImage::kWeakFunction, code, Function(5), 16);
    image.AddSymbol("I2C_IRQHandler", ElfImage::kWeakFunction, code, Function(5), 16);
    Image vectors;
    vectors.Word(kData + 0x1000);
    for (const uint32_t word : {Function(0), 0U, Function(2), Function(5), Function(2)}) {
      vectors.Word(word);
    }
    image.Add({".isr_vector", 1, 2, vectors.bytes, 0, 0, 0, 0});
    Image data;
    for (const uint32_t word :
         {0U, Function(3), 0x20000020U, Function(4), kData + 0x40, Function(6), 7U, 8U}) {
      data.Word(word);
    }
    const uint32_t section = image.Add({".data", 1, 3, data.bytes, 0, 0, 0, kData});
    image.AddSymbol("_table", kObject, section, kData, 16);
    image.AddSymbol("_k_thread_data_rx", kObject, section, kData + 16, 16);
    const uint32_t bss = image.Add({".bss", 8, 3, "", 0, 0, 0, kData + 0x40, 0x800});
    image.AddSymbol("_k_thread_stack_rx", kObject, bss, kData + 0x40, 0x400);
    image.AddSymbol("pxCurrentTCB", kObject, bss, kData + 0x440, 4);
    image.AddSymbol("bare_stack", kLabel, bss, kData + 0x500);
    image.AddSymbol("twice", 0x01, bss, kData + 0x600, 64);
    image.AddSymbol("twice", 0x01, bss, kData + 0x700, 32);
    image.AddSymbol("_Min_Stack_Size", kLabel, kAbsolute, 0x400);
    image.AddSymbol("$d", 0, section, kData);
    image.Add({".ARM.attributes", 0x70000003, 0, ArmAttributes({{6, 13}, {7, 'M'}})});
    image.entryAddress = Function(0);
  }
  // With the bit of Thumb code.
  static uint32_t Function(uint32_t number) { return kCode + 16 * number + 1; }

  ElfImage image{ELF_ARM, false, ByteOrder::kLittle, true};
  uint32_t code = 0;
};

struct Built : BuildFolder {
  explicit Built(const std::string& more) {
    Put("out/a.ci",
        CallGraph("a.c", {"Reset_Handler 8 main", "main 16", "_wrapper 8 *", "UART_IRQHandler 24",
                          "TIM_IRQHandler 40", "Default_Handler 0", "task_rx 32 panic",
                          "unlisted 4", "panic 4 print", "print 100 panic"}));
    Put("fw.elf", Firmware().image.Build());
    Put("velkor.toml", "input = \"out\"\nelf = \"fw.elf\"\n" + more);
    EXPECT_TRUE(Analyse("/b/velkor.toml"));
  }
  std::string Named(uint32_t function) const { return NameOf(*functions->Functions()[function]); }
};

TEST(ProgramFacts, TellHandlersTasksAndSymbols) {
  const Built build("");
  const ProgramFacts& facts = build.input->Facts();
  EXPECT_TRUE(facts.hasProgram && facts.hasVectors);
  EXPECT_EQ(facts.target, "cortex-m4");
  EXPECT_EQ(build.Named(facts.entry.value()), "Reset_Handler");
  ASSERT_EQ(facts.handlers.size(), 2U) << "each once";
  EXPECT_EQ(build.Named(facts.handlers[0].function), "_wrapper");
  EXPECT_EQ(build.Named(facts.handlers[1].function), "Default_Handler");
  EXPECT_EQ(facts.handlers[1].names,
            (Texts{"Default_Handler", "SPI_IRQHandler", "I2C_IRQHandler"}));
  ASSERT_EQ(facts.tasks.size(), 1U);
  EXPECT_EQ(build.Named(facts.tasks[0].function), "task_rx");
  EXPECT_EQ(facts.tasks[0].stack, "_k_thread_stack_rx");
  EXPECT_EQ(facts.firstWritable, Firmware::kData);
  Texts names;
  for (const ProgramFacts::Symbol& symbol : facts.symbols) {
    names.push_back(symbol.name + (symbol.isAbsolute ? " = " : " ") +
                    std::to_string(symbol.isAbsolute ? symbol.value : symbol.size));
  }
  EXPECT_EQ(names,
            (Texts{"_Min_Stack_Size = 1024", "_k_thread_data_rx 16", "_k_thread_stack_rx 1024",
                   "_table 16", "bare_stack 0", "pxCurrentTCB 4", "twice 32"}));
  EXPECT_EQ(facts.Find("no"), nullptr);
}

TEST(ProgramFacts, ATableAndATotalBoundWhatCallsThroughPointers) {
  const Built without("");
  EXPECT_EQ(without.bounds->State(without["_wrapper"]), BoundState::kUnbounded);
  const Built build(
      "[calls]\n_wrapper = { table = \"_table\" }\npanic = { total = 200 }\n"
      "gone = { total = 1 }\nmain = { table = \"bare_stack\" }\n");
  EXPECT_EQ(build.CalleesOf("_wrapper"), "TIM_IRQHandler UART_IRQHandler");
  EXPECT_EQ(build.bounds->State(build["_wrapper"]), BoundState::kBounded);
  EXPECT_EQ(build.bounds->Known(build["_wrapper"]), 48U);
  EXPECT_EQ(build.bounds->State(build["task_rx"]), BoundState::kBounded);
  EXPECT_EQ(build.bounds->Known(build["task_rx"]), 232U);
  EXPECT_EQ(build.CountNotes("gone of [calls] is no function"), 1U);
  EXPECT_EQ(build.CountNotes("bare_stack of [calls] is no object"), 1U);
  EXPECT_EQ(build.recorder.log.lines.size(), 2U);
}

TEST(ProgramFacts, HandlersOfAvrAreKnownByTheirNames) {
  ElfImage image(ELF_AVR, false, ByteOrder::kLittle, true);
  const uint32_t code = image.AddCode(".text", std::string(0x100, '\0'));
  image.AddSymbol("__vectors", ElfImage::kGlobalFunction, code, 0);
  image.AddSymbol("main", ElfImage::kGlobalFunction, code, 0x40, 16);
  image.AddSymbol("__vector_11", ElfImage::kGlobalFunction, code, 0x50, 16);
  image.AddSymbol("__vector_2", ElfImage::kGlobalFunction, code, 0x60, 16);
  image.AddSymbol("__vector_default", ElfImage::kGlobalFunction, code, 0x70, 16);
  BuildFolder build;
  build.Put("out/a.ci", CallGraph("a.c", {"main 180", "__vector_11 17", "__vector_2 9"}));
  build.Put("fw.elf", image.Build());
  build.Put("velkor.toml", "input = \"out\"\nelf = \"fw.elf\"\n");
  ASSERT_TRUE(build.Analyse("/b/velkor.toml"));
  const ProgramFacts& facts = build.input->Facts();
  EXPECT_EQ(facts.target, "avr");
  ASSERT_EQ(facts.handlers.size(), 2U);
  EXPECT_EQ(facts.handlers[0].names, Texts{"__vector_2"});
  EXPECT_EQ(facts.handlers[1].names, Texts{"__vector_11"});
}

}  // namespace
}  // namespace velkor
