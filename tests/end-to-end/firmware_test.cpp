#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <rapidjson/document.h>
#include <regex>
#include <sstream>

#include "program.h"
#include "scratch_folder.h"

namespace velkor {
namespace {

using testing::Program;
using testing::ProgramRun;
using testing::ReadFile;
using testing::ScratchFolder;
namespace fs = std::filesystem;

bool IsThere(const std::string& program) {
  // NOLINTNEXTLINE(concurrency-mt-unsafe): one thread
  return std::system((program + " --version >/dev/null 2>&1").c_str()) == 0;
}

// The program of tests/firmware, built in a folder of its own.
class Firmware : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!IsThere("arm-none-eabi-gcc") || !IsThere("qemu-system-arm") || !IsThere("make")) {
      GTEST_SKIP() << "arm-none-eabi-gcc, qemu-system-arm and make are needed";
    }
    const fs::path source = fs::path(VELKOR_SOURCE_DIR) / "tests/firmware";
    for (const auto& entry : fs::directory_iterator(source)) {
      if (entry.is_regular_file()) {
        folder_.Put(entry.path().filename().string(), ReadFile(entry.path()));
      }
    }
  }

  // Of a processor, on a machine that the emulator has of it.
  struct Machine {
    std::string processor;  // options of the compiler
    std::string name;
    bool hasFloatingPoint = false;
    std::string places = "";  // where code and data lie, where that is elsewhere
  };
  std::string Make(const std::string& goals, const Machine& machine) const {
    return Run("make -s " + goals + " CPU='" + machine.processor + "' MACHINE=" + machine.name +
               " PLACES='" + machine.places + "'");
  }
  // What a command of the folder prints; fails the test where it does not end well.
  std::string Run(const std::string& command) const {
    const std::string out = folder_.Path("out.txt");
    const std::string line =
        "cd " + folder_.Root() + " && timeout 60 " + command + " >" + out + " 2>&1";
    // NOLINTNEXTLINE(concurrency-mt-unsafe): one thread
    EXPECT_EQ(std::system(line.c_str()), 0) << ReadFile(out);
    return ReadFile(out);
  }
  ProgramRun Check(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "check");
    return Program(std::move(arguments)).In(folder_.Root()).Run();
  }
  // Of all call graph files: bytes by function.
  std::map<std::string, uint64_t> Frames() const {
    std::map<std::string, uint64_t> frames;
    const std::regex node(R"re(label: "(\w+)[^"]*\\n(\d+) bytes)re");
    for (const auto& entry : fs::directory_iterator(folder_.Path("build"))) {
      if (entry.path().extension() != ".ci") {
        continue;
      }
      const std::string text = ReadFile(entry.path());
      for (std::sregex_iterator match(text.begin(), text.end(), node), end; match != end; ++match) {
        frames[(*match)[1]] = std::stoul((*match)[2]);
      }
    }
    return frames;
  }

  ScratchFolder folder_;
};

// "msp 316" lines.
std::map<std::string, uint64_t> Numbers(const std::string& text) {
  std::map<std::string, uint64_t> numbers;
  std::istringstream words(text);
  std::string name;
  for (uint64_t number = 0; words >> name >> number;) {
    numbers[name] = number;
  }
  return numbers;
}

// With the switch of the table, on each processor that the table says was measured.
TEST_F(Firmware, NeedsAreSumsMadeByHandAndNoRunUsesMore) {
  const std::vector<Machine> machines = {
      {"-mcpu=cortex-m0", "microbit"},
      {"-mcpu=cortex-m3", "mps2-an385"},
      {"-mcpu=cortex-m4", "mps2-an386"},
      {"-mcpu=cortex-m7", "mps2-an500"},
      {"-mcpu=cortex-m4 -mfpu=fpv4-sp-d16 -mfloat-abi=hard", "mps2-an386", true},
      {"-mcpu=cortex-m7 -mfpu=fpv5-d16 -mfloat-abi=hard", "mps2-an500", true}};
  for (const Machine& machine : machines) {
    SCOPED_TRACE(machine.processor);
    Make("clean build/firmware.elf", machine);
    std::map<std::string, uint64_t> frames = Frames();
    const auto sum = [&](std::initializer_list<const char*> names) {
      uint64_t bytes = 0;
      for (const char* name : names) {
        EXPECT_TRUE(frames.contains(name)) << name;
        bytes += frames[name];
      }
      return bytes;
    };
    constexpr uint64_t kFrame = 36;  // 8 words, and one that aligns them
    // The end of the stack that is left free, and what is saved: 8 registers; 9 where there is
    // floating point; 16 more of it.
    const uint64_t switchBytes = machine.hasFloatingPoint ? 8 + 36 : 8 + 32;
    const uint64_t floatingFrame = machine.hasFloatingPoint ? 108 : kFrame;
    const uint64_t floatingSwitch = machine.hasFloatingPoint ? 8 + 36 + 64 : switchBytes;
    const std::map<std::string, uint64_t> byHand = {
        {"msp", sum({"Reset_Handler", "main", "exercise"}) + (sum({"SysTick_Handler"}) + kFrame) +
                    (sum({"uart_irq", "in_uart"}) + kFrame) +
                    (sum({"timer_irq", "in_timer"}) + kFrame)},
        {"a", sum({"task_a", "dispatch", "command_store"}) + kFrame + switchBytes},
        {"b", sum({"task_b", "weigh"}) + floatingFrame + floatingSwitch}};

    const ProgramRun check = Check({"--format", "json"});
    EXPECT_EQ(check.status, 0) << check.out << check.err;
    rapidjson::Document json;
    json.Parse(check.out.c_str());
    ASSERT_FALSE(json.HasParseError());
    EXPECT_EQ(json["findings"].Size(), 0U) << check.out;
    std::map<std::string, uint64_t> needs;
    for (const auto& stack : json["stacks"].GetArray()) {
      needs[stack["name"].GetString()] = stack["need"].GetUint64();
    }
    EXPECT_EQ(needs, byHand);
    EXPECT_EQ(json["stacks"][2]["size"].GetUint64(), 768U) << "the distance of two symbols";

    // Every stack is brought to its deepest: left is what aligns frames, where nothing is written.
    const std::map<std::string, uint64_t> used = Numbers(Make("run", machine));
    ASSERT_EQ(used.size(), needs.size());
    for (const auto& [stack, need] : needs) {
      EXPECT_LE(used.at(stack), need) << stack;
      EXPECT_LE(need, used.at(stack) + (stack == "msp" ? 4 * 4 : 4)) << stack;
    }
  }
}

TEST_F(Firmware, WhatTheProgramTellsIsFound) {
  Run("make -s");
  const std::string toml = ReadFile(folder_.Path("velkor.toml"));
  const auto checked = [&](const std::string& from, const std::string& to) {
    std::string changed = toml;
    changed.replace(changed.find(from), from.size(), to);
    folder_.Put("velkor.toml", changed);
    const ProgramRun run = Check({});
    return std::to_string(run.status) + "\n" + run.out + run.err;
  };
  const auto expect = [](const std::string& text, const std::string& wanted) {
    EXPECT_NE(text.find(wanted), text.npos) << text;
  };
  expect(checked("task_b_top - task_b_stack", "task_b_stack"),
         "\"task_b_stack\" has no size, and its value is an address [stack-size]");
  expect(checked("__stack_top - __stack_limit", "_no_size"), "332 of 768 bytes");
  expect(checked("__stack_top - __stack_limit", "__stack_top"),
         "\"__stack_top\" has no size, and its value is an address [stack-size]");
  expect(checked(", \"spi_irq\"", ""), "no level names the interrupt handler spi_irq");
  expect(checked("\"Default_Handler\"", ""),
         "no level names the interrupt handler Default_Handler");
  expect(checked("[calls]\n\"dispatch\" = { table = \"commands\" }\n", ""),
         "tasks.c:27:3: error: stack a has no bound: dispatch calls through a pointer [no-bound]");
  expect(checked("load = [\"limits.txt\"]", ""),
         "has no bound: PendSV_Handler calls through a pointer [no-bound]");
  // What uses floating point is told by the instructions.
  expect(checked("frame = 36 ", "# "), "548 of 1024 bytes");
  expect(checked("[stack.a]\nentry = \"task_a\"", "[stack.a]\nentry = [\"task_a\", \"task_b\"]"),
         "296 of 512 bytes");
}

// The frames of the table that are said to be measured.
TEST_F(Firmware, TheHardwarePushesWhatTheTableSays) {
  const std::string code = "-Wl,--defsym=CODE_AT=0x10000000,--defsym=DATA_AT=";
  const std::vector<Machine> machines = {
      {"-mcpu=cortex-m0", "microbit"},
      {"-mcpu=cortex-m3", "mps2-an385"},
      {"-mcpu=cortex-m4", "mps2-an386"},
      {"-mcpu=cortex-m7", "mps2-an500"},
      {"-mcpu=cortex-m33+nofp", "mps2-an505", false, code + "0x38000000"},
      {"-mcpu=cortex-m4 -mfpu=fpv4-sp-d16 -mfloat-abi=hard", "mps2-an386", true},
      {"-mcpu=cortex-m7 -mfpu=fpv5-d16 -mfloat-abi=hard", "mps2-an500", true},
      {"-mcpu=cortex-m33 -mfpu=fpv5-sp-d16 -mfloat-abi=hard", "mps2-an505", true,
       code + "0x38000000"},
      {"-mcpu=cortex-m55+nomve -mfloat-abi=hard", "mps3-an547", true, code + "0x30000000"}};
  for (const Machine& machine : machines) {
    EXPECT_EQ(Make("frames", machine),
              machine.hasFloatingPoint ? "32\n36\n104\n108\n" : "32\n36\n")
        << machine.processor;
  }
}

}  // namespace
}  // namespace velkor
