#include "files/spec_reader.h"

#include <gtest/gtest.h>

#include "core/reason.h"
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

// What any line means in each kind of file, the specification fuzzer checks against a literal
// reading.
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

TEST(SpecReader, WhatWasPerhapsNotMeantIsNoted) {
  SpecReading reading("main 4 -> direct\ndirect 6\nstatic s 2");
  reading.graph.functions.AddDefined("_s", reading.graph.files.Intern("D:\\q\\s.c"));
  EXPECT_TRUE(reading.Read(kUserFile,
                           "main, ADD=08, RECTIME=5.5\nS.C#s, ADD=12abc\nq\\s.c#s, ADD=0x10\n"
                           "direct, CALL=s, ADD=010"));
  EXPECT_EQ((Lines{"note: The number after \"ADD=\" is written \"08\" and read as 0.",
                   "note: The number after \"RECTIME=\" is written \"5.5\" and read as 5.",
                   "note: The name \"S.C#s\" fits several functions: the first one is taken, "
                   "p\\s.c#s.",
                   "note: The number after \"ADD=\" is written \"12abc\" and read as 12.",
                   "note: The name \"s\" fits several functions: the first one is taken, "
                   "p\\s.c#s."}),
            reading.recorder.log.lines);
  EXPECT_EQ("0 5", reading.Pending("main"));
  EXPECT_EQ("12 -", reading.Pending("s"));
}

// It changes no adjustment, but is kept.
TEST(SpecReader, ADirectCalleeThatIsStated) {
  SpecReading reading("main 4 -> direct\ndirect 6\nf 1 -> direct");
  EXPECT_TRUE(reading.Read(kSystemFile, "main, CALL=direct\nf, CALL=main, CALL=direct"));
  EXPECT_EQ("", reading.Pending("main"));
  EXPECT_EQ("- - _main", reading.Pending("f"));
  StkFunctionTable& table = reading.graph.functions;
  table.PutDirectCalleesInForce();
  for (const char* name : {"main", "f"}) {
    StkFunction& function = reading.graph[name];
    EXPECT_EQ(StkFunctionList{&reading.graph["direct"]}, table.DirectCallees(function));
    function.flags |= FN_INDIRECT_CALL | FN_HIDDEN_CALL;
    EXPECT_TRUE(MissingOf(function).empty());
    table.SetDirectCallees(function, {});
    EXPECT_FALSE(MissingOf(function).empty());
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
  constexpr auto kRetry = BoxAnswer::kRetry;
  const std::pair<std::vector<BoxAnswer>, uint32_t> cases[] = {
      {{kRetry, kRetry, kRetry}, 2}, {{BoxAnswer::kIgnore}, 2}, {{kRetry, BoxAnswer::kAbort}, 1}};
  for (const auto& [answers, specifications] : cases) {
    SpecReading reading(kGraph);
    size_t asked = 0;
    reading.recorder.boxes.answerWith = [&](const testing::RecordingBoxes::Box&) {
      return answers.at(asked++);
    };
    EXPECT_EQ(specifications == 2, reading.Read(kUserFile, "main,ADD=1\n?\nf,ADD=x\n?\ng,ADD=2"));
    EXPECT_EQ(answers.size(), asked);
    EXPECT_EQ(specifications + 1, reading.recorder.log.lines.size());
    EXPECT_EQ(specifications, reading.reader->SpecCount());
  }
}

// Which failure of opening each kind of file has, the fault matrix of the document checks.
TEST(SpecReader, AFileThatCannotBeOpenedIsGivenUp) {
  SpecReading reading(kGraph);
  StkSpecReader user(kUserFile, "C:\\p\\s.psg", reading.host.host, reading.recorder.reporter);
  EXPECT_EQ(nullptr, user.Open({}));
  reading.recorder.queue.Drain();
  EXPECT_EQ((Lines{"W9400 Cannot find file (C:\\p\\s.psg).\nCheck that the specified file name is "
                   "correct.",
                   "C:\\p\\s.psg Reading aborted."}),
            reading.recorder.log.lines);
}

}  // namespace
}  // namespace velkor
