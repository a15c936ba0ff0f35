#include "files/spec_reader.h"

#include <gtest/gtest.h>

#include "files/spec_reading.h"

namespace velkor {
namespace {

using testing::SpecReading;

constexpr auto kUserFile = SpecificationKind::kUserFile;
constexpr auto kLibraryTable = SpecificationKind::kLibraryTable;
constexpr auto kSystemFile = SpecificationKind::kSystemFile;

constexpr char kGraph[] = R"(
    main 4 -> direct memcpy
    direct 6
    f 6
    g 6
    static s 2
    _low 2
)";

TEST(SpecReader, AcceptedLinesOfAUserFile) {
  struct Case {
    std::string line;
    std::string function;
    std::string pending;
    bool calls = false;
  };
  const Case cases[] = {
      {"main, ADD=10, RECTIME=2, CALL=f, CALL=s.c#s", "main", "10 2 _f _s", true},
      {" \t main \v,\f ADD=10 ", "main", "10 -"},
      {"main,ADD=0", "main", "0 -"},
      {"main,ADD=65535", "main", "65535 -"},
      {"main,ADD=12bytes", "main", "12 -"},
      {"main,ADD=010", "main", "8 -"},
      {"main,ADD=0xfFg", "main", "255 -"},
      {"main,ADD=09", "main", "0 -"},
      {"main,RECTIME=4294967295", "main", "- 4294967295"},
      {"main,RECTIME=1#", "main", "- 1"},
      // Sorted by name, each once; what main calls anyway is left out.
      {"main,CALL=g,CALL=f,CALL=direct,CALL=[memcpy],CALL=g", "main", "- - _f _g", true},
      {"main,CALL=direct", "main", ""},
      {"main,CALL=main", "main", "- - _main", true},
      {"main", "main", ""},
      {"[memcpy],ADD=7", "memcpy", "7 -"},
      {"[main],ADD=7", "main", "7 -"},
      {"[S.C#s],ADD=7", "s", "7 -"},
      {"s,ADD=7", "s", "7 -"},
      {"_main,ADD=7", "main", "7 -"},
      {"_low,ADD=7", "_low", "7 -"},
      {"main,ADD=1" + std::string("\0,junk", 6), "main", "1 -"},
      {"main" + std::string("\0", 1), "main", ""},
      {"# main,ADD=7", "main", ""},
      {" \t#", "main", ""},
      {"", "main", ""},
  };
  for (const Case& c : cases) {
    SpecReading reading(kGraph);
    EXPECT_TRUE(reading.Read(kUserFile, c.line));
    EXPECT_EQ(c.pending, reading.Pending(c.function)) << c.line;
    EXPECT_EQ(c.pending.empty() ? 0u : 1u, reading.reader->SpecCount()) << c.line;
    EXPECT_EQ(c.pending.empty() ? 0u : 1u, reading.graph.functions.AdjustedCount()) << c.line;
    EXPECT_EQ(c.calls, reading.reader->CallsSeen()) << c.line;
    EXPECT_EQ(std::vector<std::string>{}, reading.recorder.log.lines) << c.line;
  }
}

TEST(SpecReader, CommentsDoNotEndALine) {
  SpecReading reading("main 4\nstatic s 2\n? c#d 0");
  EXPECT_TRUE(reading.Read(kUserFile, "#s\ns.c#s,ADD=3\nmain,RECTIME=5"));
  EXPECT_EQ("3 -", reading.Pending("s"));
  ASSERT_EQ("- 5", reading.Pending("main"));
  EXPECT_EQ(3u, reading.graph["main"].pendingAdjustment->line);
}

// Whole texts of every error that a user's file can raise, and which check comes first.
TEST(SpecReader, ErrorsOfAUserFile) {
  const std::string file255(255, 'd');
  const std::string name1021(1021, 'n');
  const std::string unknown = "W9410 Unknown function name (";
  const std::string unknownEnd =
      ") in file (C:\\p\\s.txt:line 1).\nOnly functions explicitly referred to in the project are "
      "allowed.";
  const std::string longFileEnd =
      ") qualifying static function name in file (C:\\p\\s.txt:line 1).\nThe limit is 255.";
  const std::string longNameEnd = ") in file (C:\\p\\s.txt:line 1).\nThe limit is 1022.";
  const std::string format = "W9426 Illegal format in file (C:\\p\\s.txt:line 1).\nCheck the file.";
  const std::string add = ") after \"ADD=\" in file (C:\\p\\s.txt:line 1).";
  const std::string rectime = ") after \"RECTIME=\" in file (C:\\p\\s.txt:line 1).";
  const std::string missing =
      "W9418 Missing function name after \"CALL=\" in file (C:\\p\\s.txt:line 1).";
  const std::string several =
      "W9419 Multiple function names after \"CALL=\" in file (C:\\p\\s.txt:line 1).\nPlace "
      "\"CALL=\" before each functions.";
  struct Case {
    std::string line;
    std::string message;
  };
  const Case cases[] = {
      {"nothing,ADD=1", unknown + "nothing" + unknownEnd},
      {"[x.c#s],ADD=1", unknown + "[x.c#s]" + unknownEnd},
      {"main.c#main,ADD=1", unknown + "main.c#main" + unknownEnd},
      {"Main", unknown + "Main" + unknownEnd},
      {",ADD=1", unknown + unknownEnd},
      {name1021 + "n", unknown + name1021 + "n" + unknownEnd},
      {"%s%n", unknown + "%s%n" + unknownEnd},
      {file255 + "#s", unknown + file255 + "#s" + unknownEnd},
      {file255 + "d#s", "W9411 Too long file name (" + file255 + "d" + longFileEnd},
      {file255 + "d#" + name1021 + "nn",
       "W9411 Too long file name (" + file255 + "d" + longFileEnd},
      {name1021 + "nn", "W9412 Too long function name (" + name1021 + "nn" + longNameEnd},
      {"[" + name1021 + "n]", "W9412 Too long function name (" + name1021 + "n" + longNameEnd},
      {"[d#" + name1021 + "n]", "W9412 Too long function name (" + name1021 + "n" + longNameEnd},
      {"main,CALL=" + file255 + "d#s", "W9411 Too long file name (" + file255 + "d" + longFileEnd},
      {"[main", format},
      {"[", format},
      {"[main]x", format},
      {"[#s]", missing},
      {"[]", unknown + "[]" + unknownEnd},
      {"main ADD=1", format},
      {"main,", format},
      {"main, ", format},
      {"main,ADD=1,", format},
      {"main,,ADD=1", format},
      {"main,add=1", format},
      {"main,ADD =1", format},
      {"main,ADD=1 2", format},
      {"main,CALL=f,g", format},
      {"main,CALL=f,ADD=1 2", format},
      {"main,ADD= 1", "W9413 Illegal value (" + add},
      {"main,ADD=", "W9413 Illegal value (" + add},
      {"main,ADD=0x", "W9413 Illegal value (0x" + add},
      {"main,ADD=x1", "W9413 Illegal value (x1" + add},
      {"main,ADD=-1", "W9413 Illegal value (-1" + add},
      {"main,ADD=65536", "W9413 Illegal value (65536" + add},
      {"main,ADD=4294967296", "W9413 Illegal value (4294967296" + add},
      {"main,ADD=1,ADD=x", "W9413 Illegal value (x" + add},
      {"main,ADD=1,ADD=1",
       "W9414 Multiple \"ADD=\"s for one function in file (C:\\p\\s.txt:line "
       "1).\nOnly one is allowed."},
      {"main,RECTIME=0", "W9415 Illegal value (0" + rectime},
      {"main,RECTIME=4294967296", "W9415 Illegal value (4294967296" + rectime},
      {"main,RECTIME=1,RECTIME=1",
       "W9416 Multiple \"RECTIME=\"s for one function in file "
       "(C:\\p\\s.txt:line 1).\nOnly one is allowed."},
      {"main,CALL=nothing", missing},
      {"main,CALL=", missing},
      {"main,CALL=#s", missing},
      {"main,CALL=[f", missing},
      {"main,CALL=f g", several},
      {"main,CALL=f,CALL=f g", several},
      {"main,CALL=nothing g", missing},
      {"main,ADD=1" + std::string(5110, ' '),
       "W9425 Too many characters in one line in file (C:\\p\\s.txt:line 1).\nThe limit is 5119."},
  };
  for (const Case& c : cases) {
    SpecReading reading(kGraph);
    EXPECT_TRUE(reading.Read(kUserFile, c.line));
    EXPECT_EQ(std::vector<std::string>{c.message}, reading.recorder.log.lines) << c.line;
    ASSERT_EQ(1u, reading.recorder.boxes.boxes.size()) << c.line;
    EXPECT_EQ(c.message + "\nDo you want to stop reading?", reading.recorder.boxes.boxes[0].text);
    EXPECT_EQ("", reading.Pending("main")) << c.line;
    EXPECT_EQ(0u, reading.reader->SpecCount()) << c.line;
  }
}

TEST(SpecReader, LongestLinesAndNamesAreAccepted) {
  const std::string name1022(1022, 'n');
  SpecReading reading("main 4\n? " + name1022);
  EXPECT_TRUE(reading.Read(kUserFile, name1022 + ",ADD=1\nmain,ADD=2" + std::string(5109, ' ')));
  EXPECT_EQ("1 -", reading.Pending(name1022));
  EXPECT_EQ("2 -", reading.Pending("main"));
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
    // A name that is wrong in itself is found before the limit, an unknown one after it.
    for (const char* last : {"", ",CALL=[g", ",CALL=nothing", ",CALL=g"}) {
      reading.reader->ParseLine(reading.graph.functions, 1, "main" + calls + last, 5119, stop);
    }
  });
  const std::string tooMany =
      "W9423 Too many callee functions in file (C:\\p\\s.txt:line 1).\nThe limit is 1024.";
  EXPECT_EQ((std::vector<std::string>{
                "W9418 Missing function name after \"CALL=\" in file (C:\\p\\s.txt:line 1).",
                tooMany, tooMany}),
            reading.recorder.log.lines);
}

TEST(SpecReader, OneSpecificationPerFunction) {
  SpecReading reading(kGraph);
  EXPECT_TRUE(reading.Read(
      kUserFile, "main\n\nmain,ADD=1\nf,CALL=g\n\n\n\n\n[main],ADD=2\nmain\nf,CALL=main"));
  const std::string end = ").\nOnly one is allowed.";
  const std::string begin =
      "W9424 Multiple specifications for one function in file (C:\\p\\s.txt:line ";
  EXPECT_EQ((std::vector<std::string>{begin + "3, line 9" + end, begin + "3, line 10" + end,
                                      begin + "4, line 11" + end}),
            reading.recorder.log.lines);
  EXPECT_EQ("1 -", reading.Pending("main"));
  EXPECT_EQ("- - _g", reading.Pending("f"));
  EXPECT_EQ(2u, reading.reader->SpecCount());
}

TEST(SpecReader, LibraryTablesSizeWhatTheProjectDoesNotDefine) {
  SpecReading reading("main 4 -> memcpy strlen puts\n? memcpy\n? strlen");
  ASSERT_EQ(3u, reading.graph.functions.UnknownCount());
  EXPECT_TRUE(reading.Read(kLibraryTable,
                           "memcpy,ADD=10\nmain,ADD=99,RECTIME=3\nmemcpy,ADD=12,CALL=strlen\n"
                           "strlen,RECTIME=2\nputs\nprintf,ADD=nonsense\nputs,CALL=unheard"));
  EXPECT_EQ(12u, reading.graph["memcpy"].librarySize);
  EXPECT_TRUE(reading.graph["memcpy"].Is(FN_LIBRARY));
  EXPECT_FALSE(reading.graph["strlen"].Is(FN_LIBRARY));
  EXPECT_FALSE(reading.graph["main"].Is(FN_LIBRARY));
  EXPECT_EQ("", reading.Pending("main"));
  EXPECT_EQ(2u, reading.graph.functions.UnknownCount());
  EXPECT_EQ(4u, reading.reader->SpecCount());
  EXPECT_FALSE(reading.reader->CallsSeen());
  EXPECT_TRUE(reading.recorder.log.lines.empty());
}

// What each kind of error does in each kind of file.
TEST(SpecReader, ErrorsByKindOfFile) {
  const char* const unknownNames[] = {"nothing,ADD=1", ",ADD=1", "main,CALL=nothing", "[#s],ADD=1"};
  const std::string tooLong(5120, ' ');
  const std::string others[] = {"main,ADD=x", "main x", "[main", "main,CALL=f g", tooLong};
  const std::string w9429 = "W9429 Broken stk system file (C:\\p\\s.txt).\nThe file was ignored.";
  for (const char* line : unknownNames) {
    for (const auto kind : {kLibraryTable, kSystemFile}) {
      SpecReading reading(kGraph);
      reading.recorder.reporter.SetOpenedFromCommandLine(true);
      EXPECT_TRUE(reading.Read(kind, std::string(line) + "\n[memcpy],ADD=3"));
      EXPECT_EQ(1u, reading.reader->SpecCount());
      EXPECT_TRUE(reading.recorder.log.lines.empty());
    }
  }
  for (const std::string& line : others) {
    const std::string text = "\n" + line + "\n[memcpy],ADD=3";
    SpecReading table(kGraph);
    EXPECT_FALSE(table.Read(kLibraryTable, text));
    EXPECT_EQ(std::vector<std::string>{"W9428 Illegal format in stack size specification file for "
                                       "system library functions (C:\\p\\s.txt:line 2)."},
              table.recorder.log.lines);
    EXPECT_EQ(StopAnswer::kAbort, table.reader->Answer());
    EXPECT_EQ(BoxButtons::kOk, table.recorder.boxes.boxes.at(0).buttons);

    SpecReading fromCommandLine(kGraph);
    fromCommandLine.recorder.reporter.SetOpenedFromCommandLine(true);
    EXPECT_FALSE(fromCommandLine.Read(kSystemFile, text));
    EXPECT_EQ(std::vector<std::string>{w9429}, fromCommandLine.recorder.log.lines);
    EXPECT_EQ(StopAnswer::kAbort, fromCommandLine.reader->Answer());
    EXPECT_EQ("", fromCommandLine.Pending("memcpy"));

    SpecReading fromMenu(kGraph);
    EXPECT_TRUE(fromMenu.Read(kSystemFile, text));
    EXPECT_EQ(BoxButtons::kAbortRetryIgnore, fromMenu.recorder.boxes.boxes.at(0).buttons);
    EXPECT_EQ("3 -", fromMenu.Pending("memcpy"));
  }
  // The system file's own format error; its other errors keep their texts.
  SpecReading systemFile(kGraph);
  systemFile.Read(kSystemFile, "main x\nmain,RECTIME=0");
  EXPECT_EQ(
      (std::vector<std::string>{
          w9429, "W9415 Illegal value (0) after \"RECTIME=\" in file (C:\\p\\s.txt:line 2)."}),
      systemFile.recorder.log.lines);
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
      {{BoxAnswer::kAbort}, false, 1, 1},
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

TEST(SpecReader, DoubleByteText) {
  const std::string blank = "\x81\x40";
  const std::string so = "\x83\x5C";  // second byte "\"
  SpecReading reading("main 4\nstatic " + so + " 2", CodePage::ShiftJis());
  EXPECT_TRUE(reading.Read(kUserFile, blank + so + ".c#" + so + blank + "," + blank + "ADD=5" +
                                          blank + "\nmain,CALL=" + so + blank));
  EXPECT_EQ("5 -", reading.Pending(so));
  EXPECT_EQ("- - _" + so, reading.Pending("main"));
  EXPECT_TRUE(reading.recorder.log.lines.empty());
}

TEST(SpecReader, Opening) {
  const std::string w9400 =
      "W9400 Cannot find file (C:\\p\\s.psg).\nCheck that the specified file name is correct.";
  const std::string w9401 =
      "W9401 Cannot open file to read (C:\\p\\s.psg).\nCheck that the file is readable.";
  const std::string w9429 = "W9429 Broken stk system file (C:\\p\\s.psg).\nThe file was ignored.";
  const std::string aborted = "C:\\p\\s.psg Reading aborted.";
  using Log = std::vector<std::string>;
  struct Case {
    bool systemFile;
    bool exists;
    Log log;
  };
  const Case cases[] = {{false, false, {w9400, aborted}},
                        {false, true, {w9401, aborted}},
                        {true, false, {}},
                        {true, true, {w9429}}};
  for (const Case& c : cases) {
    SpecReading reading(kGraph);
    if (c.exists) {
      reading.host.files.Refuse("C:\\p\\s.psg");
    }
    StkSpecReader user(kUserFile, "C:\\p\\s.psg", reading.host.host, reading.recorder.reporter);
    StkSystemFileReader system("C:\\p\\s.psg", reading.host.host, reading.recorder.reporter);
    StkSpecReader& reader = c.systemFile ? system : user;
    EXPECT_EQ(nullptr, reader.Open());
    reading.recorder.queue.Drain();
    EXPECT_EQ(c.log, reading.recorder.log.lines);
  }
}

}  // namespace
}  // namespace velkor
