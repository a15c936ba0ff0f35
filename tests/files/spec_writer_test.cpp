#include "files/spec_writer.h"

#include <gtest/gtest.h>
#include <random>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "core/function_sorting.h"
#include "core/recompute.h"
#include "files/spec_reading.h"
#include "fuzz/literal_spec.h"

namespace velkor {
namespace {

using testing::Graph;
using testing::SpecReading;
using Mode = StkSpecWriter::Mode;

constexpr char kSpecPath[] = "C:\\p\\p.psg";

bool GoOn(uint32_t) {
  return true;
}

void Adjust(Graph& graph, StkFunction& function, uint32_t margin = kNoMargin,
            uint32_t depth = kNoDepth) {
  graph.functions.PutInForce(function, {margin, depth});
}

struct SpecWriterTest : ::testing::Test {
  explicit SpecWriterTest(std::string_view graphText = "main 4\n") : reading(graphText) {}

  std::string Write(Mode mode, Graph& graph, WorkEnd end = WorkEnd::kCompleted,
                    const StkSpecWriter::AfterFunction& after = GoOn) {
    StkSpecWriter writer(mode, kSpecPath, graph.functions, reading.host.host);
    writer.SetKeptLines(keptLines);
    EXPECT_TRUE(writer.Open());
    const WorkEnd ended = writer.Write(after);
    EXPECT_EQ(end, ended);
    if (ended == WorkEnd::kFailed) {
      writer.PostFailure(reading.recorder.reporter);
    }
    writer.PostRefused(reading.recorder.reporter);
    reading.recorder.queue.Drain();
    return reading.host.files.Get(kSpecPath).value_or("no file");
  }
  std::string LastWarning() { return reading.recorder.log.lines.back(); }
  // No trace of a new file that did not take the old one's place.
  void ExpectOnlyTheFile() {
    EXPECT_EQ(std::vector<std::string>{kSpecPath}, reading.host.files.Paths());
  }

  SpecReading reading;
  std::vector<std::string> keptLines;
};

TEST_F(SpecWriterTest, OneLinePerFunction) {
  Graph graph("main 4 -> x y lib => f main\nstatic g 6 => z\nf 6\nother 2\nstatic h 2");
  graph["main"].extraCallees.push_back(&graph["g"]);
  Adjust(graph, graph["main"], 10, 2);
  Adjust(graph, graph["y"], 0);
  Adjust(graph, graph["h"], kNoMargin, 4294967295u);
  graph.functions.SetLibrarySize(graph["lib"], 8);
  const std::string adjusted =
      "main, ADD=10, RECTIME=2, CALL=f, CALL=main, CALL=g.c#g\r\n"
      "g.c#g, CALL=[z]\r\n"
      "h.c#h, RECTIME=4294967295\r\n"
      "[y], ADD=0\r\n";
  EXPECT_EQ(adjusted, Write(Mode::kAutomatic, graph));
  EXPECT_EQ(adjusted + "[x]\r\n[z]\r\n", Write(Mode::kUser, graph));
  Graph none("main 4");
  EXPECT_EQ("", Write(Mode::kAutomatic, none));
  ExpectOnlyTheFile();
}

// Files of one base name, and names that the plain form cannot hold or that mean another function.
TEST_F(SpecWriterTest, NamesInTheFurtherForm) {
  Graph graph("main 4\nstatic twin 2");
  const auto add = [&](const char* symbol, const char* path, uint32_t flags = 0) {
    graph.functions.AddDefined(symbol, graph.files.Intern(path)).flags |= flags;
  };
  add("_step", "C:\\p\\x\\util.c");
  add("_step", "C:\\p\\y\\UTIL.C");
  add("_step", "util.c");
  add("_step", "/h/my util.c");
  add("_step", "/g/a/z.c");
  add("_step", "/h/a/z.c");
  add("_ns::f(int, char)", "/h/f.cpp", FN_GLOBAL);
  add("_a#\"b\"", "/h/one.c", FN_GLOBAL);
  add("_main", "/h/other.c", FN_GLOBAL);
  add("_twin", "C:\\p\\twin.c");  // the second one: no name tells the two apart
  add(("_" + std::string(1023, 'n')).c_str(), "/h/one.c", FN_GLOBAL);
  graph.functions.AddUnknown("_step");
  for (StkFunction* function : graph.functions.Functions()) {
    Adjust(graph, *function, 1);
  }
  graph["main"].extraCallees.push_back(&graph["twin"]);
  EXPECT_EQ(
      "x\\util.c#step, ADD=1\r\n"
      "y\\UTIL.C#step, ADD=1\r\n"
      "\"util.c\"#step, ADD=1\r\n"
      "\"my util.c\"#step, ADD=1\r\n"
      "g/a/z.c#step, ADD=1\r\n"
      "h/a/z.c#step, ADD=1\r\n"
      "\"ns::f(int, char)\", ADD=1\r\n"
      "\"a#\"\"b\"\"\", ADD=1\r\n"
      "\"other.c\"#main, ADD=1\r\n"
      "[\"step\"], ADD=1\r\n",
      Write(Mode::kAutomatic, graph));
  const auto& warnings = reading.recorder.log.lines;
  ASSERT_EQ(4u, warnings.size()) << "main, the twins and the long name";
  EXPECT_EQ(
      "W9467 Specification of function (main) cannot be saved in file (C:\\p\\p.psg).\nNo name "
      "tells the function from others, or it cannot be written.",
      warnings[0]);
}

TEST_F(SpecWriterTest, CountsAndStops) {
  Graph graph("? u1\nd1 1\n? u2\nd2 1\nd3 1");
  for (const char* name : {"d1", "d2", "d3"}) {
    Adjust(graph, graph[name]);
  }
  reading.host.files.Put(kSpecPath, "old");
  std::vector<uint32_t> counts;
  const auto stopAt = [&](uint32_t last) {
    counts.clear();
    return [&counts, last](uint32_t count) {
      counts.push_back(count);
      return count < last;
    };
  };
  // What a stopped automatic save would have replaced is still there.
  EXPECT_EQ("old", Write(Mode::kAutomatic, graph, WorkEnd::kStopped, stopAt(2)));
  EXPECT_EQ((std::vector<uint32_t>{1, 2}), counts);
  ExpectOnlyTheFile();
  const std::string saved = "d1\r\nd2\r\nd3\r\n";
  EXPECT_EQ(saved, Write(Mode::kAutomatic, graph, WorkEnd::kCompleted, stopAt(3)));
  EXPECT_EQ(saved, Write(Mode::kUser, graph, WorkEnd::kStopped, stopAt(4)))
      << "a file that exists is replaced whole or not at all";
  reading.host.files.Remove(kSpecPath);
  EXPECT_EQ(saved, Write(Mode::kUser, graph, WorkEnd::kStopped, stopAt(3)));
  reading.host.files.Remove(kSpecPath);
  EXPECT_EQ(saved + "[u1]\r\n", Write(Mode::kUser, graph, WorkEnd::kStopped, stopAt(4)));
  EXPECT_EQ((std::vector<uint32_t>{1, 2, 3, 4}), counts);
  EXPECT_EQ(saved + "[u1]\r\n[u2]\r\n", Write(Mode::kUser, graph, WorkEnd::kCompleted, stopAt(5)));
  // After the last function a stop comes too late, also for the kept lines.
  keptLines = {"gone, ADD=1"};
  EXPECT_EQ(saved + "# Kept without effect: each names a function that was not found.\r\n" +
                "gone, ADD=1\r\n",
            Write(Mode::kAutomatic, graph, WorkEnd::kCompleted, stopAt(3)));
}

TEST_F(SpecWriterTest, LongLines) {
  // "first" and five callees fill the line to the last character.
  for (const size_t excess : {0u, 1u}) {
    std::string callees;
    std::string definitions;
    std::string line = "before\r\nfirst";
    for (const char letter : {'a', 'b', 'c', 'd', 'e'}) {
      const std::string callee(letter == 'e' ? 1015 + excess : 1016, letter);
      callees += " " + callee;
      line += ", CALL=" + callee;
      definitions += callee + " 2\n";
    }
    line.resize(8 + 5119);
    Graph graph("before 1\nfirst 1 =>" + callees + "\nafter 1\n" + definitions);
    Adjust(graph, graph["before"]);
    Adjust(graph, graph["after"]);
    reading.host.files.Put(kSpecPath, "old");
    const WorkEnd end = excess == 0 ? WorkEnd::kCompleted : WorkEnd::kFailed;
    EXPECT_TRUE((excess == 0 ? line + "\r\nafter\r\n" : "old") ==
                Write(Mode::kAutomatic, graph, end));
    ExpectOnlyTheFile();
    reading.host.files.Remove(kSpecPath);
    EXPECT_TRUE((excess == 0 ? line + "\r\nafter\r\n" : line) == Write(Mode::kUser, graph, end));
  }
  EXPECT_EQ("W9461 Too many characters in specification for one function.\nThe limit is 5119.",
            LastWarning());
}

TEST_F(SpecWriterTest, ManyLines) {
  std::string text;
  for (int i = 0; i < 32768; ++i) {
    text += "? f" + std::to_string(i) + "\n";
  }
  Graph graph(text);
  Adjust(graph, graph["f0"]);
  graph.functions.SetLibrarySize(*graph.functions.Functions().back(), 1);
  const std::string whole = Write(Mode::kUser, graph);
  EXPECT_EQ("[f32766]\r\n", whole.substr(whole.size() - 10));
  Adjust(graph, *graph.functions.Functions().back());
  EXPECT_TRUE(whole.size() == Write(Mode::kUser, graph, WorkEnd::kFailed).size());
  EXPECT_EQ("W9406 Too many lines in file (C:\\p\\p.psg).\nThe limit is 32767.", LastWarning());
}

// Which operation fails how, the fault matrix of the document checks.
TEST_F(SpecWriterTest, FailuresLeaveTheOldFileOrWhatWasWritten) {
  Graph graph("main 4");
  Adjust(graph, graph["main"], 10);
  reading.host.files.Put(kSpecPath, "old");
  for (const Mode mode : {Mode::kAutomatic, Mode::kUser}) {
    reading.host.files.SetCapacity(5);
    const bool automatic = mode == Mode::kAutomatic;
    EXPECT_EQ("old", Write(mode, graph, WorkEnd::kFailed));
    ExpectOnlyTheFile();
    if (!automatic) {
      reading.host.files.Remove(kSpecPath);
      reading.host.files.SetCapacity(5);
      EXPECT_EQ("main,", Write(mode, graph, WorkEnd::kFailed));
    }
    EXPECT_EQ("W9404 File write error (C:\\p\\p.psg).", LastWarning());
    ExpectOnlyTheFile();
  }
  reading.host.files.SetCapacity(std::nullopt);
  const auto holder = reading.host.files.OpenForRead(kSpecPath);
  EXPECT_EQ("main,", Write(Mode::kAutomatic, graph, WorkEnd::kFailed));
  EXPECT_TRUE(LastWarning().starts_with("W9402 ")) << LastWarning();
  ExpectOnlyTheFile();
  // A writer that is given up in the middle leaves nothing behind either.
  EXPECT_TRUE(
      StkSpecWriter(Mode::kAutomatic, kSpecPath, graph.functions, reading.host.host).Open());
  ExpectOnlyTheFile();
}

// Names that a reader could take for one another, and names of characters that lines are made of.
void Populate(Graph& graph, std::mt19937& random) {
  std::vector<const StkFileEntry*> files;
  for (const char* path :
       {"C:\\p\\one.c", "C:\\p\\TWO.C", "C:\\q\\one.c", "one.c", "/h/a b/#,\"[one].c"}) {
    files.push_back(&graph.files.Intern(path));
  }
  std::set<std::string> names = {"_f", "__f", "___f", "_g", "__g", "_"};
  for (int i = 0; i < 3; ++i) {
    std::string name = "_";
    for (uint32_t length = 1 + random() % 4; length > 0; --length) {
      name += "f# ,[]\"\\="[random() % 9];
    }
    names.insert(name);
  }
  for (const std::string& name : names) {
    for (const StkFileEntry* file : files) {
      if (random() % 3 == 0) {
        graph.functions.AddDefined(name, *file);
      }
    }
    if (random() % 2 == 0) {
      graph.functions.AddDefined(name, *files.front()).flags |= FN_GLOBAL;
    }
    if (random() % 3 == 0) {
      graph.functions.AddUnknown(name);
    }
  }
}

void AdjustAtRandom(Graph& graph, std::mt19937& random) {
  const auto& functions = graph.functions.Functions();
  for (const auto& function : functions) {
    Adjust(graph, *function,
           static_cast<uint32_t>(random() % 2 == 0 ? kNoMargin : random() % 65536),
           static_cast<uint32_t>(random() % 2 == 0 ? kNoDepth : 1 + random() % 1000));
    for (const auto& callee : functions) {
      if (random() % 6 == 0) {
        InsertByName(function->extraCallees, *callee, graph.codePage);
      }
    }
  }
}

TEST_F(SpecWriterTest, WhatIsWrittenReadsBackAsItWas) {
  for (uint32_t seed = 0; seed < 400; ++seed) {
    std::mt19937 random(seed);
    Graph graph("");
    Populate(graph, random);
    AdjustAtRandom(graph, random);
    const std::string written = Write(Mode::kUser, graph);
    ASSERT_EQ(std::vector<std::string>{}, reading.recorder.log.lines) << written;

    SpecReading fresh("");
    random.seed(seed);
    Populate(fresh.graph, random);
    ASSERT_TRUE(fresh.Read(SpecificationKind::kUserFile, written));
    ASSERT_EQ(std::vector<std::string>{}, fresh.recorder.log.lines) << written;
    StkRootList roots;
    Recompute(fresh.graph.functions, roots, true, nullptr, nullptr, fresh.recorder.reporter);
    ASSERT_EQ(testing::InForce(fresh.graph.functions), testing::InForce(graph.functions))
        << written;
  }
}

}  // namespace
}  // namespace velkor
