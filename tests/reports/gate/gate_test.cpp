#include <gtest/gtest.h>
#include <random>

#include "reports/gate/gate_case.h"
#include "reports/gate/init_text.h"
#include "reports/gate/target_table.h"

namespace velkor::reports {
namespace {

using testing::FindingLines;
using testing::GateCase;
using testing::StackLines;
using Lines = std::vector<std::string>;

constexpr const char* kProgram =
    "main 100 -> f\nf 20\nrx 50\nuart 24\nspi 40\ntim 30\nreset 8 -> main\n";
constexpr const char* kFigures = "frame = 36\nswitch = 44\n";
constexpr const char* kStacks =
    "[stack.msp]\nentry = \"main\"\nsize = 400\n"
    "[stack.rx]\nentry = \"rx\"\nsize = 138\nreserve = 8\n";

struct Firmware : GateCase {
  explicit Firmware(std::string_view graph = kProgram) : GateCase(graph) {
    for (const char* handler : {"uart", "spi", "tim"}) {
      AddHandler(handler);
    }
    facts.entry = IndexOf("reset");
  }
  Lines Stacks(const std::string& interrupts) {
    return StackLines(Check(std::string(kFigures) + kStacks + interrupts));
  }
};

// Hand sums: msp 100 + 20; uart and spi share a level: 40 + 36; tim 30 + 36.
TEST(Gate, NeedsAreSumsOfBoundsFramesSwitchAndReserve) {
  Firmware firmware;
  const std::string levels = "levels = [[\"uart\", \"spi\"], [\"tim\"]]\n";
  EXPECT_EQ(firmware.Stacks("[interrupts]\nstack = \"msp\"\n" + levels),
            (Lines{"msp ok 262 of 400", "rx ok 138 of 138"}));
  EXPECT_EQ(firmware.Stacks("[interrupts]\n" + levels),
            (Lines{"msp ok 306 of 400", "rx over-budget 244 of 138"}));
  EXPECT_EQ(firmware.Stacks("[interrupts]\nstack = \"msp\"\nnesting = 1\n"),
            (Lines{"msp ok 196 of 400", "rx ok 138 of 138"}));
  // Whoever is forgotten is a level of its own.
  EXPECT_EQ(firmware.Stacks("[interrupts]\nstack = \"msp\"\nlevels = [[\"tim\"]]\n"),
            (Lines{"msp ok 322 of 400", "rx ok 138 of 138"}));
  EXPECT_EQ(firmware.Stacks("[interrupts]\nstack = \"msp\"\nignore = [\"spi\", \"uart\"]\n"),
            (Lines{"msp ok 186 of 400", "rx ok 138 of 138"}));
  // Two priorities of one function lie upon each other; two names of it in one table do not.
  firmware.facts.handlers[0].names = {"UART0", "UART1"};
  EXPECT_EQ(firmware.Stacks("[interrupts]\nstack = \"msp\"\n"
                            "levels = [[\"UART0\"], [\"UART1\"], [\"tim\", \"spi\"]]\n"),
            (Lines{"msp ok 316 of 400", "rx ok 138 of 138"}));
  // A figure within a stack wins.
  EXPECT_EQ(StackLines(firmware.Check(
                "frame = 36\nswitch = 44\n[stack.rx]\nentry = [\"rx\", \"f\"]\nsize = 100\n"
                "frame = 1\nswitch = 2\n[stack.msp]\nentry = \"main\"\nsize = 999\n"
                "[interrupts]\nstack = \"msp\"\n" +
                levels)),
            (Lines{"rx ok 53 of 100", "msp ok 262 of 999"}));
  const GateReport report =
      firmware.Check(std::string(kFigures) + kStacks + "[interrupts]\nstack = \"msp\"\n" + levels);
  Lines rows;
  for (const StackRow& row : report.stacks[0].rows) {
    rows.push_back(row.what + " " + std::to_string(row.bytes));
  }
  EXPECT_EQ(rows,
            (Lines{"main 100", "f 20", "interrupt spi 40", "pushed by the hardware before spi 36",
                   "interrupt tim 30", "pushed by the hardware before tim 36"}));
  EXPECT_EQ(FindingLines(report), Lines());
}

TEST(Gate, ALimitCountsNoInterruptAndWithoutAConfigurationNothingElse) {
  Firmware firmware;
  firmware.limits = {{"main", 120}, {"rx", 49}};
  firmware.isConfigured = false;
  EXPECT_EQ(StackLines(firmware.Check("")),
            (Lines{"main ok 120 of 120", "rx over-budget 50 of 49"}));
  firmware.isConfigured = true;
  EXPECT_EQ(StackLines(firmware.Check(std::string(kFigures) + "[interrupts]\nignore = []\n")),
            (Lines{"main over-budget 200 of 120", "rx over-budget 130 of 49"}));
}

// Where no handler is known, and none is said to be none, one may come all the same.
TEST(Gate, WithoutAVectorTableOneFrameIsCounted) {
  GateCase bare("main 100\nisr 20\n");
  const std::string stack = std::string(kFigures) + "[stack.m]\nentry = \"main\"\nsize = 500\n";
  EXPECT_EQ(StackLines(bare.Check(stack)), Lines{"m ok 180 of 500"});
  EXPECT_EQ(StackLines(bare.Check(stack + "[interrupts]\nlevels = []\n")),
            Lines{"m ok 144 of 500"});
  EXPECT_EQ(StackLines(bare.Check(stack + "[interrupts]\nlevels = [[\"isr\"]]\n")),
            Lines{"m ok 200 of 500"});
  const std::string task =
      "warning unlisted-task: nothing calls isr, and no stack and no level names it";
  const std::string interrupt =
      " no-vectors: no program tells the interrupts, and \"levels\" of [interrupts] is not "
      "stated: no interrupt is counted";
  EXPECT_EQ(FindingLines(bare.Check(stack)), (Lines{task, "warning" + interrupt}));
  EXPECT_EQ(FindingLines(bare.Check("frame = 0\n" + stack.substr(stack.find('\n') + 1))),
            Lines{task});
  bare.facts.hasProgram = true;
  EXPECT_TRUE(FindingLines(bare.Check(stack))[0].starts_with("error no-vectors: no vector"));
  EXPECT_EQ(FindingLines(bare.Check(stack + "[interrupts]\nlevels = []\n")), Lines{task});
  EXPECT_EQ(bare.Faults(stack + "[interrupts]\nnesting = 2\n"),
            Lines{"8:1 \"nesting\" counts the handlers of a vector table, and none is known: name "
                  "them in \"levels\""});
}

TEST(Gate, SizesComeFromTheProgram) {
  GateCase sized("main 100\n");
  sized.facts.hasProgram = true;
  sized.facts.firstWritable = 0x20000000;
  sized.facts.symbols = {{"_Min_Stack_Size", 0x400, 0, true}, {"__limit", 0x20001000, 0, true},
                         {"_estack", 0x20005000, 0, true},    {"_zero", 0, 0, true},
                         {"array", 0x20000100, 512, false},   {"label", 0x20000000, 0, false}};
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"array", "ok 100 of 512"},
      {"_Min_Stack_Size", "ok 100 of 1024"},
      {"_estack - __limit", "ok 100 of 16384"},
      {"_estack", "\"_estack\" has no size, and its value is an address"},
      {"label", "\"label\" has no size, and its value is an address"},
      {"_zero", "\"_zero\" has no size, and its value is 0"},
      {"gone", "\"gone\" is no object or symbol of the program"},
      {"__limit - _estack", "\"__limit\" does not lie behind \"_estack\""},
      {"array - gone", "\"gone\" is no object or symbol of the program"}};
  for (const auto& [size, wanted] : cases) {
    const GateReport report = sized.Check(
        "frame = 0\nswitch = 0\n[stack.m]\nentry = \"main\"\n"
        "size = \"" +
        size + "\"\n[interrupts]\nlevels = []\n");
    if (report.findings.empty()) {
      EXPECT_EQ(testing::Line(report.stacks[0]), wanted) << size;
      continue;
    }
    EXPECT_EQ(FindingLines(report),
              Lines{"error stack-size: the size of stack m is not known: " + wanted});
    EXPECT_EQ(report.findings[0].place.line, 6U) << "at its key";
  }
}

// At the size itself and one above, and what is to stay free likewise.
TEST(Gate, AStackHasTheWorstOfWhatIsWrongWithIt) {
  GateCase program("main 1000\n");
  const auto state = [&](uint32_t size, const std::string& gate) {
    const GateReport report = program.Check(
        "frame = 0\nswitch = 0\n[stack.m]\nentry = \"main\"\nsize = " + std::to_string(size) +
        "\n[interrupts]\nlevels = []\n[gate]\n" + gate);
    EXPECT_LE(report.findings.size(), 1U);
    EXPECT_EQ(report.Passed(), report.findings.empty());
    return report.findings.empty() ? std::string("passed") : report.findings[0].text;
  };
  EXPECT_EQ(state(1000, ""), "passed");
  EXPECT_EQ(state(999, ""), "stack m needs 1000 of 999 bytes: 1 too many");
  EXPECT_EQ(state(999, "headroom = 10"), "stack m needs 1000 of 999 bytes: 1 too many");
  EXPECT_EQ(state(1010, "headroom = 10"), "passed");
  EXPECT_EQ(state(1009, "headroom = 10"),
            "stack m needs 1000 of 1009 bytes: 9 left of the 10 that are to stay free");
  EXPECT_EQ(state(1112, "headroom = \"10%\""), "passed") << "112 of 112";
  EXPECT_EQ(state(1111, "headroom = \"10%\""),
            "stack m needs 1000 of 1111 bytes: 111 left of the 112 that are to stay free");
}

TEST(Gate, NothingAboveTheLimitOfTheInputPasses) {
  GateCase program("main 40000 -> f\nf 40000\n");
  EXPECT_EQ(FindingLines(program.Check("frame = 0\nswitch = 0\n[stack.m]\nentry = \"main\"\n"
                                       "size = 100000\n[interrupts]\nlevels = []\n")),
            Lines{"error over-budget: stack m needs 80000 bytes, and a bound of it is over the "
                  "limit of 65535 bytes"});
}

TEST(Gate, EachCauseIsFoundOnceWithItsStacks) {
  Firmware firmware(
      "main 100 -> memcpy a\na 4 -> b\nb 8 -> a\nrx 50 -> memcpy\nuart 24 -> memcpy\nspi 40\n"
      "tim 30\nreset 8 -> main\n? memcpy\n");
  const std::string levels = "levels = [[\"uart\"], [\"spi\"], [\"tim\"]]\n";
  const GateReport carried =
      firmware.Check(std::string(kFigures) + kStacks + "[interrupts]\nstack = \"msp\"\n" + levels);
  EXPECT_EQ(FindingLines(carried),
            (Lines{"error no-bound: stack msp has no bound: the recursion of a, b has no limit",
                   "error no-bound: stacks msp, rx have no bound: the size of [memcpy] is not "
                   "known"}));
  EXPECT_EQ(StackLines(carried)[1], "rx no-bound >=138 of 138");
  EXPECT_EQ(carried.findings[1].help, "state \"[memcpy], ADD=bytes\" in a file of \"load\"");
  // What is known suffices to say that a stack is too small.
  EXPECT_EQ(
      StackLines(firmware.Check(std::string(kFigures) + kStacks + "[interrupts]\n" + levels))[1],
      "rx over-budget >=304 of 138");
}

TEST(Gate, NamesAreFoundOrSaidWithTheirPlace) {
  Firmware firmware(
      "main 100\nrx 50\nstatic twice 4\nstatic twice 8\nuart 1\nspi 1\ntim 1\n"
      "reset 0 -> main\n");
  const GateReport report = firmware.Check(
      std::string(kFigures) +
      "[stack.m]\nentry = [\"main\",\n  \"gone\", \"twice\"]\nsize = 500\n"
      "[stack.rx]\nentry = \"rx\"\nsize = 500\n"
      "[interrupts]\nstack = \"m\"\nlevels = [[\"uart\", \"spi\", \"tim\", \"usb\"]]\n");
  const Lines lines = FindingLines(report);
  ASSERT_EQ(lines.size(), 5U);
  EXPECT_EQ(lines[0],
            "error entry-not-found: the entry of stack m: \"gone\" is no function of the "
            "project");
  EXPECT_TRUE(lines[1].starts_with(
      "error entry-not-found: the entry of stack m: \"twice\" can mean more than one function: "))
      << lines[1];
  EXPECT_EQ(report.findings[1].place.line, 6U);
  EXPECT_EQ(report.findings[1].place.column, 11U);
  EXPECT_EQ(report.findings[1].place.file, "fw/velkor.toml");
  EXPECT_EQ(lines[2],
            "error entry-not-found: an interrupt handler: \"usb\" is no function of the "
            "project");
  EXPECT_EQ(report.stacks[0].bounded, false) << "what is not found may be large";
}

TEST(Gate, WhatItCannotBeAskedIsSaidWithItsPlace) {
  Firmware firmware;
  EXPECT_EQ(
      firmware.Faults("[stack.m]\nentry = \"main\"\nsize = \"?\"\n[stack.n]\nentry = \"rx\"\n"
                      "[interrupts]\nlevels = [[\"uart\"], [\"uart\"]]\nignore = [\"uart\"]\n"),
      (Lines{
          "2:8 the bytes that the hardware pushes when an interrupt begins are not known "
          "(the target is not known): state \"frame\"",
          "4:1 the size of [stack.m] is to be stated", "5:8 the size of [stack.n] is to be stated",
          "8:12 the handler \"uart\" is named twice", "8:22 the handler \"uart\" is named twice"}));
  EXPECT_EQ(firmware.Faults(kFigures),
            Lines{"1:1 there is no stack to check: add [stack.NAME] with entry and size"});
}

// Against what the program shows, and with one source a figure.
TEST(Gate, FiguresComeFromTheTableByTargetAndRtos) {
  const TargetTable& table = TargetTable::BuiltIn();
  const std::vector<std::tuple<std::string, std::string, int, int>> cases = {
      {"cortex-m0", "none", 36, 0},
      {"cortex-m4f", "none", 108, 0},
      {"cortex-m3", "freertos", 36, 40},
      {"cortex-m4f", "freertos", 108, 108},
      {"cortex-m33f", "freertos", 108, -1},
      {"cortex-m33", "zephyr", 36, 0},
      {"avr", "none", 0, 0},
      {"avr", "freertos", 0, -1},
      {"rv32imac", "freertos", 0, 132},
      {"rv32imafc", "freertos", 0, -1},
      {"x86-64", "none", -1, 0},
      {"cortex-m4", "threadx", 36, -1},
      {"", "none", -1, 0}};
  for (const auto& [target, rtos, frame, contextSwitch] : cases) {
    const StackFigure* const found[] = {table.Frame(target), table.Switch(target, rtos)};
    const int wanted[] = {frame, contextSwitch};
    for (int i = 0; i < 2; ++i) {
      ASSERT_EQ(found[i] != nullptr, wanted[i] >= 0) << target << " " << rtos;
      if (found[i] != nullptr) {
        EXPECT_EQ(found[i]->bytes, static_cast<uint32_t>(wanted[i])) << target << " " << rtos;
        EXPECT_FALSE(found[i]->source.empty());
      }
    }
  }
  EXPECT_EQ(table.Frame("cortex-m7f")->withoutFloatingPoint, 36U);
  EXPECT_EQ(table.Switch("cortex-m4f", "freertos")->withoutFloatingPoint, 44U);

  Firmware firmware;
  firmware.facts.target = "cortex-m3";
  firmware.facts.symbols = {{"pxCurrentTCB", 0x20000000, 4, false}};
  EXPECT_EQ(
      StackLines(firmware.Check(std::string(kStacks) + "[interrupts]\nstack = \"msp\"\n"
                                                       "ignore = [\"uart\", \"spi\", \"tim\"]\n")),
      (Lines{"msp ok 120 of 400", "rx ok 134 of 138"}));
  firmware.facts.symbols = {{"_tx_thread_current_ptr", 0x20000000, 4, false}};
  EXPECT_EQ(firmware.Faults(kStacks),
            Lines{"2:8 the bytes that a change of the task pushes are not known (target "
                  "\"cortex-m3\", rtos \"threadx\"): state \"switch\""});
}

TEST(Gate, WhatWasNotReadIsFound) {
  GateCase program("main 4\n");
  AnalysisResult& result = program.result.emplace(program.analysis.Result());
  result.inputs.missing = {"C:\\p\\lost.asm", "C:\\p\\told.asm"};
  result.inputs.notWhole = {"C:\\p\\cut.asm"};
  result.warnings = {{"W9431", "Cannot find it.", "C:\\p\\told.asm", 0},
                     {"W9413", "Illegal value (/a/b/limits.txt:line 13).", "limits.txt", 13},
                     {"W9413", "Illegal value (/a/b/limits.txt:line 24).", "limits.txt", 24},
                     {"W9466", "Too large in total.", "", 0}};
  result.notes = {{"module-not-whole", "It is cut.", "C:\\p\\cut.asm", 7, 0, {}, true},
                  {"stale-input", "It is old.", "a.ci", 0, 0, {}, false},
                  {"hidden-call", "It is counted.", "a.ci", 0, 0, {}, false},
                  {"folder-not-read", "It is closed.", "/x", 0, 0, {}, true}};
  const CodePage page = CodePage::Utf8();
  SourcePlaces sources(program.files, page, GateCase::kPath, {});
  const Configuration configuration;
  const NameMeanings names = MeaningsOf(configuration, {"main"}, program.analysis.graph.functions);
  const GateOutcome outcome = CheckGate({.result = result,
                                         .configuration = configuration,
                                         .facts = program.facts,
                                         .names = names,
                                         .limits = {{"main", 4}},
                                         .isConfigured = false},
                                        nullptr, sources);
  EXPECT_EQ(FindingLines(*outcome.report),
            (Lines{"error module-not-whole: It is cut", "error folder-not-read: It is closed",
                   "error module-missing: W9431 Cannot find it",
                   "error statement-not-read: W9413 Illegal value (/a/b/limits.txt:line 13)",
                   "error statement-not-read: W9413 Illegal value (/a/b/limits.txt:line 24)",
                   "error module-missing: the module C:\\p\\lost.asm is missing",
                   "warning stale-input: It is old"}));
  // Told apart in every build, wherever it is and whatever stands before the line.
  EXPECT_EQ(outcome.report->findings[3].cause, "W9413 Illegal value (limits.txt:line )");
  EXPECT_EQ(outcome.report->findings[4].cause, "W9413 Illegal value (limits.txt:line ) 2");
}

TEST(Gate, AFindingLiesWhereTheBytesComeFrom) {
  GateCase program("main 10 -> f g\nf 100\ng 90 -> p\n? p\n");
  const std::string toml =
      "frame = 0\nswitch = 0\n[stack.m]\nentry = \"main\"\nsize = 50\n[interrupts]\nlevels = []\n";
  EXPECT_EQ(program.Check(toml).findings[0].place.file, "fw/velkor.toml") << "f.c is not there";
  program.files.Put("/r/fw/p/f.c", "");
  const GateReport report = program.Check(toml);
  EXPECT_EQ(report.findings[0].place.file, "fw/p/f.c");
  ASSERT_EQ(report.findings[0].steps.size(), 2U);
  EXPECT_EQ(report.findings[0].steps[1].text, "f: 100 bytes");
  EXPECT_EQ(report.findings[0].rows, "main 10 + f 100 = at least 110");
}

TEST(SourcePlaces, FindsFilesOfTheRepositoryAlone) {
  testing::MemoryFileSystem files;
  files.Put("/home/me/r/.git/HEAD", "ref: refs/heads/main\n");
  files.Put("/home/me/r/.git/packed-refs",
            "# x\n0123456789abcdef0123456789abcdef01234567 refs/heads/main\n");
  for (const char* path : {"/home/me/r/fw/src/a.c", "/home/me/r/lib/b.c", "/home/me/out/c.c"}) {
    files.Put(path, "");
  }
  const CodePage page = CodePage::Utf8();
  SourcePlaces places(files, page, "/home/me/r/fw/velkor.toml", {"/home/me/r/fw/build/obj"});
  EXPECT_EQ(places.Root(), "/home/me/r");
  EXPECT_EQ(places.Configuration(), "fw/velkor.toml");
  EXPECT_EQ(places.Find("/home/me/r/lib/b.c"), "lib/b.c");
  EXPECT_EQ(places.Find("../../src/a.c"), "fw/src/a.c") << "from where it was compiled";
  EXPECT_EQ(places.Find("src/./x/../a.c"), "fw/src/a.c");
  EXPECT_EQ(places.Find("/builds/ci/r/fw/src/a.c"), "fw/src/a.c") << "compiled elsewhere";
  EXPECT_EQ(places.Find("C:\\work\\lib\\b.c"), "lib/b.c");
  EXPECT_EQ(places.Find("/home/me/out/c.c"), std::nullopt);
  EXPECT_EQ(places.Find("../../../../../../../home/me/out/c.c"), std::nullopt);
  EXPECT_EQ(CommitOf(files, page, places.Root()), "0123456789abcdef0123456789abcdef01234567");
  files.Put("/home/me/r/.git/HEAD", "0123456789abcdef0123456789abcdef01234567");
  EXPECT_EQ(CommitOf(files, page, places.Root()), "0123456789abcdef0123456789abcdef01234567");
  EXPECT_EQ(CommitOf(files, page, "/home"), "");
}

// What is written is read again, and says what the program shows and what is open.
TEST(Init, WritesWhatTheProgramShows) {
  GateCase program("reset 8 -> main\nmain 100 -> u\nidle 10\nuart 24\nodd\"name 4\n? u\n");
  program.AddHandler("uart", {"UART0_IRQHandler"});
  program.facts.target = "cortex-m3";
  program.facts.entry = program.IndexOf("reset");
  program.facts.symbols = {{"__StackLimit", 0x20000000, 0, true},
                           {"__StackTop", 0x20000400, 0, true},
                           {"_kernel", 0x20000800, 32, false},
                           {"_sw_isr_table", 0x100, 64, false},
                           {"idle_stack", 0x20000900, 512, false}};
  program.facts.tasks = {{program.IndexOf("idle"), "idle_stack", "_k_thread_data_idle"},
                         {program.IndexOf("odd\"name"), "", "start"}};
  program.result = program.analysis.Result();
  const std::string text = InitText({.result = *program.result,
                                     .facts = program.facts,
                                     .input = "build \\ \"x\"",
                                     .elf = "fw.elf",
                                     .isProject = false});
  const ReadConfigurationResult read = ReadConfiguration(text);
  ASSERT_TRUE(read.configuration) << read.faults[0].text << "\n" << text;
  const Configuration& written = *read.configuration;
  EXPECT_EQ(written.input, Lines{"build \\ \"x\""});
  EXPECT_EQ(written.target + " " + written.rtos, "cortex-m3 zephyr");
  ASSERT_EQ(written.stacks.size(), 3U);
  EXPECT_EQ(written.stacks[0].name + " " + written.stacks[0].entries[0].text, "main main");
  EXPECT_EQ(written.stacks[0].size, Configuration::Size("__StackTop - __StackLimit"));
  EXPECT_EQ(written.stacks[0].reserve, 8U) << "of what calls main";
  EXPECT_EQ(written.stacks[1].size, Configuration::Size("idle_stack"));
  EXPECT_EQ(written.stacks[2].size, Configuration::Size("?"));
  ASSERT_EQ(written.calls.size(), 1U);
  EXPECT_EQ(written.calls[0].table, "_sw_isr_table");
  for (const char* line :
       {"#  [\"uart\"],   # 2 names\n", "# headroom = ", "#   the size of [u] is not known\n"}) {
    EXPECT_NE(text.find(line), text.npos) << text;
  }
  // What is open is refused at its line, and nothing else.
  const Lines faults = program.Faults(text.substr(text.find("target")));
  ASSERT_EQ(faults.size(), 1U);
  EXPECT_TRUE(faults[0].ends_with("is to be stated")) << faults[0];
}

// Random programs with a vector table and tasks, everything named; then one name is taken away.
TEST(Gate, TakingAStackOrAHandlerAwayNeverPassesSilently) {
  std::mt19937 random(1);
  const auto below = [&](uint32_t limit) { return static_cast<uint32_t>(random() % limit); };
  int turnedGreen = 0;
  for (int number = 0; number < 400 && !::testing::Test::HasFailure(); ++number) {
    const uint32_t stacks = 1 + below(3);
    const uint32_t handlers = below(4);
    std::string graph = "reset 8 -> s0\n";
    Lines names;
    for (uint32_t i = 0; i < stacks + handlers; ++i) {
      names.push_back((i < stacks ? "s" : "h") + std::to_string(i));
      graph += names.back() + " " + std::to_string(below(200)) +
               (below(3) == 0   ? " -> shared\n"
                : below(5) == 0 ? " -> other unknown\n"
                                : "\n");
    }
    GateCase program(graph + "shared 40\nother 90\n? unknown\n");
    const bool hasTable = below(3) != 0;
    program.facts.entry = program.IndexOf("reset");
    for (uint32_t i = 0; i < stacks + handlers; ++i) {
      if (i >= stacks && hasTable) {
        program.AddHandler(names[i]);
      } else if (i > 0 && i < stacks && below(2) == 0) {
        program.facts.tasks.push_back({program.IndexOf(names[i]), "", "reset"});
      }
    }
    const bool oneCarries = below(2) == 0;
    const auto toml = [&](uint32_t without) {
      std::string text = kFigures;
      std::string levels;
      for (uint32_t i = 0; i < stacks + handlers; ++i) {
        if (i == without) {
          continue;
        }
        if (i < stacks) {
          text += "[stack." + names[i] + "]\nentry = \"" + names[i] + "\"\nsize = 250\n";
        } else {
          levels += "[\"" + names[i] + "\"],";
        }
      }
      return text + "[interrupts]\n" + (oneCarries && without != 0 ? "stack = \"s0\"\n" : "") +
             "levels = [" + levels + "]\n";
    };
    const GateReport whole = program.Check(toml(UINT32_MAX));
    const Baseline baseline = BaselineOf(whole, *program.result, "fw/velkor.toml", "");
    for (uint32_t without = 0; without < stacks + handlers; ++without) {
      const GateOutcome less = program.Ask(toml(without));
      if (whole.Passed() || !less.report || !less.report->Passed()) {
        continue;
      }
      ++turnedGreen;
      const bool isFound = std::ranges::any_of(less.report->findings, [&](const Finding& finding) {
        return finding.cause.ends_with(names[without]) ||
               (without == 0 && finding.cause.ends_with("reset"));
      });
      EXPECT_TRUE(isFound) << graph << toml(without);
      const GateOutcome held = program.Ask(toml(without), &baseline);
      EXPECT_FALSE(held.report->Passed()) << "a baseline has it\n" << graph << toml(without);
    }
  }
  EXPECT_GT(turnedGreen, 50);
}

}  // namespace
}  // namespace velkor::reports
