#include "files/spec_writer.h"

#include <gtest/gtest.h>
#include <random>

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
    EXPECT_TRUE(writer.Open());
    const WorkEnd ended = writer.Write(after);
    EXPECT_EQ(end, ended);
    if (ended == WorkEnd::kFailed) {
      writer.PostFailure(reading.recorder.reporter);
      reading.recorder.queue.Drain();
    }
    return reading.host.files.Get(kSpecPath).value_or("no file");
  }
  std::string LastWarning() { return reading.recorder.log.lines.back(); }
  // No trace of a new file that did not take the old one's place.
  void ExpectOnlyTheFile() {
    EXPECT_EQ(std::vector<std::string>{kSpecPath}, reading.host.files.Paths());
  }

  SpecReading reading;
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
}

TEST_F(SpecWriterTest, LongLines) {
  // "first, CALL=" and the callee's name fill the line to the last character.
  for (const size_t excess : {0u, 1u}) {
    const std::string callee(5119 - 12 + excess, 'n');
    Graph graph("before 1\nfirst 1 => " + callee + "\n" + callee + " 2\nafter 1");
    Adjust(graph, graph["before"]);
    Adjust(graph, graph["after"]);
    const std::string line = "before\r\nfirst, CALL=" + std::string(5107, 'n');
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

// Names that a reader could take for one another.
void Populate(Graph& graph, std::mt19937& random) {
  const auto& one = graph.files.Intern("C:\\p\\one.c");
  const auto& two = graph.files.Intern("C:\\p\\TWO.C");
  for (const char* name : {"_f", "__f", "___f", "_g", "__g"}) {
    for (const StkFileEntry* file : {&one, &two}) {
      if (random() % 2 == 0) {
        graph.functions.AddDefined(name, *file);
      }
    }
    if (random() % 2 == 0) {
      graph.functions.AddDefined(name, one).flags |= FN_GLOBAL;
    }
  }
  for (const char* name : {"_u", "__u", "_v"}) {
    graph.functions.AddUnknown(name);
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
