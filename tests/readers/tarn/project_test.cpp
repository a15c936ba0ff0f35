#include "readers/tarn/project.h"

#include <gtest/gtest.h>

#include "readers/tarn/compiler_info.h"
#include "readers/tarn/module_location.h"
#include "readers/tarn/spec_sources.h"
#include "support/recorder.h"
#include "support/test_host.h"

namespace velkor {
namespace {

using testing::Recorder;
using testing::TestHost;
using Texts = std::vector<std::string>;

constexpr const char* kPath = "C:\\w\\app.prj";

class ProjectTest : public ::testing::Test {
 protected:
  bool Load(const std::string& text, const std::string& path = kPath) {
    host_.files.Put(path, text);
    project_ = std::make_unique<StkProject>(host_.host, recorder_.reporter);
    return project_->Load(path);
  }
  Texts Modules() const { return {project_->Modules().begin(), project_->Modules().end()}; }

  TestHost host_;
  Recorder recorder_{host_.codePage};
  std::unique_ptr<StkProject> project_;
};

// What is shown when the project cannot be read, the log, and whether the program is to end.
struct Refusal {
  std::string box;
  Texts log;
  bool ends = false;
  bool operator==(const Refusal&) const = default;
};

TEST_F(ProjectTest, Refusals) {
  const auto refusalOf = [this](const std::string& path, bool fromCommandLine) {
    Recorder recorder(host_.codePage);
    Refusal refusal;
    recorder.reporter.SetOpenedFromCommandLine(fromCommandLine);
    recorder.reporter.SetCloseRequest([&refusal] { refusal.ends = true; });
    StkProject project(host_.host, recorder.reporter);
    EXPECT_FALSE(project.Load(path));
    EXPECT_EQ(project.Modules().size(), 0U);
    EXPECT_EQ(recorder.boxes.boxes.size(), 1U);
    refusal.box = recorder.boxes.boxes[0].text;
    refusal.log = recorder.log.lines;
    return refusal;
  };
  host_.files.Put("C:\\locked.prj", "");
  host_.files.Refuse("C:\\locked.prj");
  host_.files.AddDirectory("C:\\folder.prj");
  host_.files.Put("C:\\bare.prj", "[SrcFile]\nSource1=a.c\n");
  host_.files.Put("C:\\empty.prj", "[ProjectManager]\nPath=\n[SrcFile]\nSource1=a.c\n");

  const std::string missing = "E9300 Cannot find project file (C:\\none.prj).";
  EXPECT_EQ(refusalOf("C:\\none.prj", false), (Refusal{missing, {}, false}));
  EXPECT_EQ(refusalOf("C:\\none.prj", true), (Refusal{missing, {}, true}));
  for (const std::string path : {"C:\\locked.prj", "C:\\folder.prj"}) {
    const std::string unreadable =
        "W9401 Cannot open file to read (" + path + ").\nCheck that the file is readable.";
    EXPECT_EQ(refusalOf(path, false), (Refusal{unreadable, {unreadable}, false}));
    EXPECT_EQ(refusalOf(path, true),
              (Refusal{"E9301 Project file read error (" + path + ").", {}, true}));
  }
  for (const std::string path : {"C:\\bare.prj", "C:\\empty.prj"}) {
    const std::string illegal = "W9440 Illegal project file (" + path + ").\nCheck the file.";
    EXPECT_EQ(refusalOf(path, false), (Refusal{illegal, {illegal}, false}));
    EXPECT_EQ(
        refusalOf(path, true),
        (Refusal{
            "E9302 Illegal format in project file (" + path + ").\nCheck the file.", {}, true}));
  }
}

TEST_F(ProjectTest, SourcesAreTakenUpToTheFirstGap) {
  host_.files.AddDirectory("C:\\p");
  EXPECT_TRUE(
      Load("[projectmanager]\npath=C:\\p\n[SRCFILE]\nsource1=main.c\nSource2=MAIN.C\n"
           "Source3=main.h\nSource4=sub\\UTIL.C\nSource5=%s%n.c\nSource7=late.c\n"
           "Source0=early.c\n"));
  EXPECT_EQ(Modules(), (Texts{"C:\\p\\main.asm", "C:\\p\\UTIL.asm", "C:\\p\\%s%n.asm"}));
  EXPECT_EQ(recorder_.boxes.boxes.size(), 0U);
  EXPECT_EQ(project_->Path(), kPath);
  EXPECT_EQ(project_->SystemFilePath(), "C:\\w\\app.psg");
}

TEST_F(ProjectTest, SourcesAreLimitedInNumberAndLength) {
  std::string text = "[ProjectManager]\nPath=C:\\p\n[SrcFile]\n";
  for (int i = 1; i <= StkProjectFile::kMaxSources + 5; ++i) {
    text += "Source" + std::to_string(i) + "=s" + std::to_string(i) + ".c\n";
  }
  host_.files.AddDirectory("C:\\p");
  EXPECT_TRUE(Load(text));
  EXPECT_EQ(Modules().size(), 2048U);
  EXPECT_EQ(Modules().back(), "C:\\p\\s2048.asm");

  EXPECT_TRUE(
      Load("[ProjectManager]\nPath=C:\\p\n[SrcFile]\nSource1=" + std::string(10000000, 'x') +
           ".c\nSource2=" + std::string(5000, 'y') + ".c\nSource3=z.c\nSource4=app.prj\n"));
  EXPECT_EQ(Modules(), (Texts{"C:\\p\\" + std::string(5000, 'y') + ".asm", "C:\\p\\z.asm"}));
}

// "line text" of each note; "!" before it where something is not read.
Texts DescribedNotes(const std::vector<StkNote>& notes) {
  Texts texts;
  for (const StkNote& note : notes) {
    EXPECT_EQ(note.rule, "source-left-out");
    EXPECT_EQ(note.file, kPath);
    texts.push_back((note.incomplete ? "!" : "") + std::to_string(note.line) + " " + note.text);
  }
  return texts;
}

TEST_F(ProjectTest, SourcesThatAreLeftOutAreNotedOnce) {
  const auto notesOf = [this](const std::string& sources) {
    EXPECT_TRUE(Load("[ProjectManager]\r\nPath=C:\\p\r\n" + sources));
    EXPECT_EQ(recorder_.log.lines, Texts());
    return DescribedNotes(project_->Notes());
  };
  const auto sourcesTo = [](int last) {
    std::string text = "[SrcFile]\n";
    for (int i = 1; i <= last; ++i) {
      text += "Source" + std::to_string(i) + "=s" + std::to_string(i) + ".c\n";
    }
    return text;
  };
  EXPECT_EQ(notesOf("[SrcFile]\nSource1=a.c\nSource2=a.H\nSource3=b.inc\nSource1=a.c\n"
                    "[srcfile]\nSource1=a.c\nSource9=\nOther=x.c\nSource01=y.c\n"),
            Texts());
  const std::string repeated =
      " is left out: the section or the key stands in the file before, and the first one counts.";
  EXPECT_EQ(notesOf("[SrcFile]\r\nSource1=a.c\r\nSource2=boot.ASM\rSource4=late.c\n\n"
                    "source1=twin.c\nSource5=start.s\n[SRCFILE]\nSource1=b.c\nSource2=boot.ASM\n"),
            (Texts{"5 Source2=boot.ASM is no C source: what it defines is not known.",
                   "!6 Source4=late.c is left out: Source3 before it is missing.",
                   "!8 source1=twin.c" + repeated,
                   "9 Source5=start.s is no C source: what it defines is not known.",
                   "!11 Source1=b.c" + repeated}));
  const std::string limit = " is left out: a project has at most 2048 sources.";
  EXPECT_EQ(notesOf(sourcesTo(2048)), Texts());
  EXPECT_EQ(notesOf(sourcesTo(2050)),
            (Texts{"!2052 Source2049=s2049.c" + limit, "!2053 Source2050=s2050.c" + limit}));
  const Texts many = notesOf(sourcesTo(2200));
  ASSERT_EQ(many.size(), 101U);
  EXPECT_EQ(many.back(), "!0 52 more sources of the project are left out.");
  EXPECT_EQ(notesOf("[SrcFile]\nSource1=" + std::string(5118, 'x') + ".c\nSource2=a.c\n"),
            Texts{"!4 Source1=" + std::string(60, 'x') +
                  "... is left out: the value is longer than 5119 bytes."});
  const std::string tooLarge =
      " The project file is read up to here: it is too large (at most 64 MiB and 1048576 lines "
      "with "
      "a section or a key). Sources that follow are left out.";
  EXPECT_EQ(notesOf("[SrcFile]\nSource1=a.c\n;" + std::string(size_t{64} << 20, 'x')),
            Texts{"!5" + tooLarge});
  std::string keys = "[SrcFile]\nSource1=a.c\n";
  for (int i = 4; i < 1 << 20; ++i) {
    keys += "k=\n";
  }
  EXPECT_EQ(notesOf(keys + "Source2=b.c\n"), Texts{"!1048577" + tooLarge});
}

TEST_F(ProjectTest, WhereTheModuleIs) {
  host_.files.AddDirectory("C:\\p\\prj");
  host_.files.AddDirectory("C:\\out.d");
  host_.files.AddDirectory("C:\\p\\asm");
  const auto moduleOf = [this](const std::string& source, const std::string& options) {
    EXPECT_TRUE(Load("[ProjectManager]\nPath=C:\\p\\prj\n[SrcFile]\nSource1=" + source +
                     "\n[Options.CCTarn 0]\n" + options));
    return Modules().empty() ? "" : Modules()[0];
  };
  const std::string key = "Outasmsrccmb0=";
  EXPECT_EQ(moduleOf("src\\main.c", ""), "C:\\p\\prj\\main.asm");
  EXPECT_EQ(moduleOf("D:\\x\\a.b.c", key + "\n"), "C:\\p\\prj\\a.b.asm");
  EXPECT_EQ(moduleOf("main.c", key + "C:\\out.d\n"), "C:\\out.d\\main.asm");
  EXPECT_EQ(moduleOf("main.c", key + "..\\asm\n"), "C:\\p\\asm\\main.asm");
  EXPECT_EQ(moduleOf("main.c", key + "out\\all\n"), "C:\\p\\prj\\out\\all.asm");
  EXPECT_EQ(moduleOf("main.c", key + "C:\\all.src\n"), "C:\\all.src");
  EXPECT_EQ(moduleOf("main.c", key + "C:\\all.\n"), "C:\\all");
  // A section of the source's own, under the name of its file alone.
  const std::string own = "[Options.CCTarn 0 MAIN.c]\n";
  EXPECT_EQ(moduleOf("..\\s\\main.c", key + "C:\\out.d\n" + own + key + "C:\\own.asm\n"),
            "C:\\own.asm");
  EXPECT_EQ(moduleOf("other.c", key + "C:\\out.d\n" + own + key + "C:\\own.asm\n"),
            "C:\\out.d\\other.asm");
  EXPECT_EQ(moduleOf("main.c", key + "C:\\out.d\n" + own + key + "\n"), "C:\\out.d\\main.asm");
  // No C sources.
  for (const char* source : {"main.h", ".c", "main.c\\", "main.cpp", "main"}) {
    EXPECT_EQ(moduleOf(source, ""), "") << source;
  }
}

TEST_F(ProjectTest, HostPathsKeepTheirSlashes) {
  host_.files.AddDirectory("/home/me/p");
  const std::string sources = "[SrcFile]\nSource1=src/main.c\nSource2=/x/abs.c\n";
  EXPECT_TRUE(Load("[ProjectManager]\nPath=/home/me/p\n" + sources));
  EXPECT_EQ(Modules(), (Texts{"/home/me/p/main.asm", "/home/me/p/abs.asm"}));
  // A relative project directory lies beside the project file.
  EXPECT_TRUE(Load("[ProjectManager]\nPath=.\n" + sources, "/home/me/p/app.prj"));
  EXPECT_EQ(project_->ProjectDirectory(), "/home/me/p");
  EXPECT_EQ(Modules(), (Texts{"/home/me/p/main.asm", "/home/me/p/abs.asm"}));
  EXPECT_EQ(project_->SystemFilePath(), "/home/me/p/app.psg");
}

TEST_F(ProjectTest, SpecificationSources) {
  const auto sourcesOf = [this](const std::string& options, uint32_t series, uint32_t version) {
    EXPECT_TRUE(Load("[ProjectManager]\nPath=C:\\p\n[Options.CCTarn 0]\n" + options));
    Texts paths;
    for (const auto& source :
         SpecSourcesOf(*project_, {{series, version}, {}}, host_.host, recorder_.reporter)) {
      const bool isSystemFile = source->Kind() == SpecificationKind::kSystemFile;
      EXPECT_EQ(isSystemFile, source->Path() == project_->SystemFilePath());
      EXPECT_TRUE(isSystemFile || source->Kind() == SpecificationKind::kLibraryTable);
      paths.push_back(source->Path());
    }
    return paths;
  };
  const std::string library = "Librarychk=1\n";
  const std::string psg = "C:\\w\\app.psg";
  EXPECT_EQ(sourcesOf(library, 0, 0), Texts{psg});
  EXPECT_EQ(sourcesOf(library, 1, 0x329), Texts{psg});
  EXPECT_EQ(sourcesOf("", 1, 0x330), (Texts{"C:\\data\\ltr.txt", psg}));
  EXPECT_EQ(sourcesOf(library, 1, 0x370), (Texts{"C:\\data\\ltr.txt", "C:\\data\\lt.txt", psg}));
  EXPECT_EQ(sourcesOf(library + "Floatingpoint=1\n", 1, 0x370),
            (Texts{"C:\\data\\ltr.txt", "C:\\data\\ltf.txt", psg}));
  EXPECT_EQ(sourcesOf(library + "Floatingpoint=1\nStaticmodelchk=1\n", 1, 0x370),
            (Texts{"C:\\data\\ltrsm.txt", "C:\\data\\ltsm.txt", psg}));
}

TEST(CompilerInfo, VersionsBySeries) {
  struct Case {
    uint32_t series;
    uint32_t version;
    bool accepted;
    bool old;
  };
  for (const Case& expected :
       {Case{1, 0x329, false, true}, Case{1, 0x330, true, true}, Case{1, 0x369, true, true},
        Case{1, 0x370, true, false}, Case{2, 0x129, false, true}, Case{2, 0x130, true, true},
        Case{2, 0x159, true, true}, Case{2, 0x160, true, false}, Case{3, 0x001, true, false},
        Case{0, 0x001, true, false}}) {
    StkCompilerInfo info;
    info.series = expected.series;
    info.version = expected.version;
    EXPECT_EQ(info.RuntimeHelpersAccepted(), expected.accepted) << info.VersionText();
    EXPECT_EQ(info.OldStackFigure(), expected.old) << info.VersionText();
  }
}

}  // namespace
}  // namespace velkor
