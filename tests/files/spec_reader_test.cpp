#include "files/spec_reader.h"

#include <gtest/gtest.h>

#include "files/spec_reading.h"

namespace velkor {
namespace {

using testing::SpecReading;
using Lines = std::vector<std::string>;

constexpr auto kUserFile = SpecificationKind::kUserFile;
constexpr auto kLibraryTable = SpecificationKind::kLibraryTable;
constexpr auto kSystemFile = SpecificationKind::kSystemFile;

constexpr char kGraph[] = R"(
    main 4 -> direct memcpy
    direct 6
    f 6
    g 6
    static s 2
)";

// Examples only: the specification fuzzer checks what any line means in each kind of file, against
// a literal reading, and its corpus holds each rule at its border.
TEST(SpecReader, AcceptedLinesOfAUserFile) {
  struct Case {
    std::string line;
    std::string function;
    std::string pending;
    bool calls = false;
  };
  const Case cases[] = {
      {"main, ADD=10, RECTIME=2, CALL=f, CALL=s.c#s", "main", "10 2 _f _s", true},
      {"main,ADD=010", "main", "8 -"},
      {"main,ADD=12bytes", "main", "12 -"},
      // Sorted by name, each once; what main calls anyway is left out.
      {"main,CALL=g,CALL=f,CALL=direct,CALL=[memcpy],CALL=g", "main", "- - _f _g", true},
      {"main,CALL=direct", "main", ""},
      {"[S.C#s],ADD=7", "s", "7 -"},
      {"# main,ADD=7", "main", ""},
  };
  for (const Case& c : cases) {
    SpecReading reading(kGraph);
    EXPECT_TRUE(reading.Read(kUserFile, "#s\n" + c.line));
    EXPECT_EQ(c.pending, reading.Pending(c.function)) << c.line;
    EXPECT_EQ(c.pending.empty() ? 0u : 1u, reading.reader->SpecCount()) << c.line;
    EXPECT_EQ(c.pending.empty() ? 0u : 1u, reading.graph.functions.AdjustedCount()) << c.line;
    EXPECT_EQ(c.calls, reading.reader->CallsSeen()) << c.line;
    EXPECT_EQ(Lines{}, reading.recorder.log.lines) << c.line;
  }
}

// Whole texts of every error that a user's file can raise.
TEST(SpecReader, ErrorsOfAUserFile) {
  const std::string long256(256, 'd');
  const std::string long1023(1023, 'n');
  const std::string at = " in file (C:\\p\\s.txt:line 1).";
  const std::string one = "s for one function" + at + "\nOnly one is allowed.";
  const std::pair<std::string, std::string> cases[] = {
      {"[x.c#s],ADD=1", "W9410 Unknown function name ([x.c#s])" + at +
                            "\nOnly functions explicitly referred to in the project are allowed."},
      {long256 + "#s", "W9411 Too long file name (" + long256 +
                           ") qualifying static function name" + at + "\nThe limit is 255."},
      {long1023, "W9412 Too long function name (" + long1023 + ")" + at + "\nThe limit is 1022."},
      {"main,ADD=65536", "W9413 Illegal value (65536) after \"ADD=\"" + at},
      {"main,ADD=1,ADD=1", "W9414 Multiple \"ADD=\"" + one},
      {"main,RECTIME=0", "W9415 Illegal value (0) after \"RECTIME=\"" + at},
      {"main,RECTIME=1,RECTIME=1", "W9416 Multiple \"RECTIME=\"" + one},
      {"main,CALL=nothing g", "W9418 Missing function name after \"CALL=\"" + at},
      {"main,CALL=f g", "W9419 Multiple function names after \"CALL=\"" + at +
                            "\nPlace \"CALL=\" before each functions."},
      {"main,ADD=1" + std::string(5110, ' '),
       "W9425 Too many characters in one line" + at + "\nThe limit is 5119."},
      {"main,CALL=f,ADD=1 2", "W9426 Illegal format" + at + "\nCheck the file."},
  };
  for (const auto& [line, message] : cases) {
    SpecReading reading(kGraph);
    EXPECT_TRUE(reading.Read(kUserFile, line));
    EXPECT_EQ(Lines{message}, reading.recorder.log.lines) << line;
    EXPECT_EQ(Lines{message.substr(0, 5) + " C:\\p\\s.txt:1"}, reading.recorder.log.Warnings());
    ASSERT_EQ(1u, reading.recorder.boxes.boxes.size()) << line;
    EXPECT_EQ(message + "\nDo you want to stop reading?", reading.recorder.boxes.boxes[0].text);
    EXPECT_EQ("", reading.Pending("main")) << line;
  }
}

TEST(SpecReader, CalleesAreLimitedByTheAttributesMet) {
  SpecReading reading("main 4 -> f\nf 6\ng 6");
  std::string calls;
  for (int i = 0; i < 1024; ++i) {
    calls += ",CALL=f";
  }
  reading.reader = std::make_unique<StkSpecReader>(kUserFile, "C:\\p\\s.txt", reading.host.host,
                                                   reading.recorder.reporter);
  Event stop(Event::Reset::kManual);
  reading.InWorker([&] {
    for (const char* last : {"", ",CALL=g"}) {
      reading.reader->ParseLine(reading.graph.functions, 1, "main" + calls + last, 5119, stop);
    }
  });
  EXPECT_EQ(
      Lines{"W9423 Too many callee functions in file (C:\\p\\s.txt:line 1).\nThe limit is 1024."},
      reading.recorder.log.lines);
}

TEST(SpecReader, OneSpecificationPerFunction) {
  SpecReading reading(kGraph);
  EXPECT_TRUE(reading.Read(kUserFile, "main\n\nmain,ADD=1\n[main],ADD=2\nmain"));
  const std::string end = ").\nOnly one is allowed.";
  const std::string begin =
      "W9424 Multiple specifications for one function in file (C:\\p\\s.txt:line ";
  EXPECT_EQ((Lines{begin + "3, line 4" + end, begin + "3, line 5" + end}),
            reading.recorder.log.lines);
  EXPECT_EQ((Lines{"W9424 C:\\p\\s.txt:4", "W9424 C:\\p\\s.txt:5"}),
            reading.recorder.log.Warnings());
  EXPECT_EQ("1 -", reading.Pending("main"));
}

TEST(SpecReader, TheProgramsOwnFilesAreGivenUpWithOneMessage) {
  const std::string text = "[unknown],ADD=1\nmain,ADD=x\n[memcpy],ADD=3";
  SpecReading table(kGraph);
  EXPECT_FALSE(table.Read(kLibraryTable, text));
  EXPECT_EQ(Lines{"W9428 Illegal format in stack size specification file for system library "
                  "functions (C:\\p\\s.txt:line 2)."},
            table.recorder.log.lines);
  EXPECT_EQ(BoxButtons::kOk, table.recorder.boxes.boxes.at(0).buttons);

  SpecReading system(kGraph);
  system.recorder.reporter.SetOpenedFromCommandLine(true);
  EXPECT_FALSE(system.Read(kSystemFile, text));
  EXPECT_EQ(Lines{"W9429 Broken stk system file (C:\\p\\s.txt).\nThe file was ignored."},
            system.recorder.log.lines);
  EXPECT_EQ(Lines{"W9428 C:\\p\\s.txt:2"}, table.recorder.log.Warnings());
  EXPECT_EQ(Lines{"W9429 C:\\p\\s.txt:2"}, system.recorder.log.Warnings());
  EXPECT_EQ(StopAnswer::kAbort, system.reader->Answer());

  // A function that is gone costs its own line only.
  SpecReading changed(kGraph);
  EXPECT_TRUE(changed.Read(kSystemFile, "[unknown],ADD=1\nf,CALL=gone\nmain,ADD=2"));
  EXPECT_EQ("2 -", changed.Pending("main"));
  EXPECT_EQ(Lines(), changed.recorder.log.lines);
}

TEST(SpecReader, AnswersOfTheStopQuestion) {
  const std::string text = "main,ADD=1\n?\nf,ADD=x\n?\ng,ADD=2";
  struct Case {
    std::vector<BoxAnswer> answers;
    bool complete;
    size_t logged;
    uint32_t specifications;
  };
  const Case cases[] = {
      {{BoxAnswer::kRetry, BoxAnswer::kRetry, BoxAnswer::kRetry}, true, 3, 2},
      {{BoxAnswer::kIgnore}, true, 3, 2},
      {{BoxAnswer::kRetry, BoxAnswer::kAbort}, false, 2, 1},
  };
  for (const Case& c : cases) {
    SpecReading reading(kGraph);
    size_t asked = 0;
    reading.recorder.boxes.answerWith = [&](const testing::RecordingBoxes::Box&) {
      return c.answers.at(asked++);
    };
    EXPECT_EQ(c.complete, reading.Read(kUserFile, text));
    EXPECT_EQ(c.answers.size(), asked);
    EXPECT_EQ(c.logged, reading.recorder.log.lines.size());
    EXPECT_EQ(c.specifications, reading.reader->SpecCount());
  }
}

TEST(SpecReader, Opening) {
  const std::string path = "C:\\p\\s.psg";
  const std::string aborted = path + " Reading aborted.";
  const Lines missing = {
      "W9400 Cannot find file (C:\\p\\s.psg).\nCheck that the specified file name is correct.",
      aborted};
  const Lines refused = {
      "W9401 Cannot open file to read (C:\\p\\s.psg).\nCheck that the file is readable.", aborted};
  const Lines broken = {"W9429 Broken stk system file (C:\\p\\s.psg).\nThe file was ignored."};
  for (const bool exists : {false, true}) {
    SpecReading reading(kGraph);
    Lines& log = reading.recorder.log.lines;
    if (exists) {
      reading.host.files.Refuse(path);
    }
    StkSpecReader user(kUserFile, path, reading.host.host, reading.recorder.reporter);
    EXPECT_EQ(nullptr, user.Open());
    reading.recorder.queue.Drain();
    EXPECT_EQ(exists ? refused : missing, std::exchange(log, {}));
    StkSystemFileReader system(path, reading.host.host, reading.recorder.reporter);
    EXPECT_EQ(nullptr, system.Open());
    reading.recorder.queue.Drain();
    EXPECT_EQ(exists ? broken : Lines{}, log);
  }
}

}  // namespace
}  // namespace velkor
