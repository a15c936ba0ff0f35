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

TEST_F(Firmware, NeedsAreSumsMadeByHandAndNoRunUsesMore) {
  Run("make -s");
  std::map<std::string, uint64_t> frames = Frames();
  const auto sum = [&](std::initializer_list<const char*> names) {
    uint64_t bytes = 0;
    for (const char* name : names) {
      EXPECT_TRUE(frames.contains(name)) << name;
      bytes += frames[name];
    }
    return bytes;
  };
  constexpr uint64_t kFrame = 36;            // 8 words, and one that aligns them
  constexpr uint64_t kFloatingFrame = 108;   // 26, and one
  constexpr uint64_t kSwitch = 36;           // 9 registers
  constexpr uint64_t kFloatingSwitch = 100;  // and 16 of floating point
  const std::map<std::string, uint64_t> byHand = {
      {"msp", sum({"Reset_Handler", "main", "exercise"}) + (sum({"SysTick_Handler"}) + kFrame) +
                  (sum({"uart_irq", "in_uart"}) + kFrame) +
                  (sum({"timer_irq", "in_timer"}) + kFrame)},
      {"a", sum({"task_a", "dispatch", "command_store"}) + kFrame + kSwitch},
      {"b", sum({"task_b", "weigh"}) + kFloatingFrame + kFloatingSwitch}};

  const ProgramRun check = Check({"--format", "json"});
  EXPECT_EQ(check.status, 0) << check.out;
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

  const std::map<std::string, uint64_t> used = Numbers(Run("make -s run"));
  ASSERT_EQ(used.size(), needs.size());
  for (const auto& [stack, need] : needs) {
    EXPECT_LE(used.at(stack), need) << stack;
    EXPECT_LE(static_cast<double>(need), 1.3 * static_cast<double>(used.at(stack))) << stack;
    RecordProperty("needOf_" + stack, std::to_string(need));
    RecordProperty("usedOf_" + stack, std::to_string(used.at(stack)));
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
         "224 of 512 bytes");
}

// The figures of the table that are said to be measured.
TEST_F(Firmware, TheHardwarePushesWhatTheTableSays) {
  const std::string plain = "32\n36\n";
  const std::string floating = plain + "104\n108\n";
  const auto pushed = [&](const std::string& cpu, const std::string& machine) {
    return Run("make -s frames CPU='" + cpu + "' MACHINE=" + machine);
  };
  EXPECT_EQ(pushed("-mcpu=cortex-m0", "microbit"), plain);
  EXPECT_EQ(pushed("-mcpu=cortex-m3", "mps2-an385"), plain);
  EXPECT_EQ(pushed("-mcpu=cortex-m4", "mps2-an386"), plain);
  EXPECT_EQ(pushed("-mcpu=cortex-m7", "mps2-an500"), plain);
  EXPECT_EQ(pushed("-mcpu=cortex-m4 -mfpu=fpv4-sp-d16 -mfloat-abi=hard", "mps2-an386"), floating);
  EXPECT_EQ(pushed("-mcpu=cortex-m7 -mfpu=fpv5-d16 -mfloat-abi=hard", "mps2-an500"), floating);
}

}  // namespace
}  // namespace velkor
