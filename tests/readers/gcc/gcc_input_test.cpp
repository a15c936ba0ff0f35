#include <set>

#include "readers/gcc/build_folder.h"
#include "readers/gcc/literal_build.h"

namespace velkor {
namespace {

using namespace std::string_literals;
using testing::BuildFolder;
using testing::CallGraph;
using testing::LiteralBuild;
namespace fs = std::filesystem;

fs::path Corpus() {
  return fs::path(VELKOR_SOURCE_DIR).parent_path() / "shared/corpus/gcc";
}

// The engine against the literal reading: of every function the frame, what it calls, its marks
// and, where it cannot reach itself, its total and the kinds of reasons.
void Compare(BuildFolder& build, const std::map<std::string, uint32_t>& largerFrames,
             uint32_t redZone) {
  LiteralBuild literal;
  for (const std::string& module : build.input->Modules()) {
    literal.Add(module, *build.host.files.Get(module));
  }
  const auto keyOf = [&](const StkFunction& function) {
    if (!function.IsStatic()) {
      return std::string(function.name);
    }
    const fs::path source(function.file->name);
    return "/b/" + source.stem().string() + ".ci#" + std::string(function.name);
  };
  ASSERT_EQ(build.functions->Count(), literal.functions.size());
  for (auto& [key, function] : literal.functions) {
    const auto larger = largerFrames.find(key);
    function.frame = larger != largerFrames.end() ? larger->second : function.frame;
    const bool isLeaf = function.isDefined && function.callees.empty() && !function.isIndirect;
    function.frame += isLeaf ? redZone : 0;
  }
  std::set<std::string> recursive;
  for (const auto& [key, function] : literal.functions) {
    if (literal.Below(key).contains(key)) {
      recursive.insert(key);
    }
  }
  size_t compared = 0;
  for (const StkFunction* each : build.functions->Functions()) {
    const std::string key = keyOf(*each);
    ASSERT_TRUE(literal.functions.contains(key)) << key;
    const LiteralBuild::Function& function = literal.functions.at(key);
    EXPECT_EQ(each->Is(FN_DEFINED), function.isDefined) << key;
    EXPECT_EQ(each->frameSize, function.frame) << key;
    EXPECT_EQ(each->Is(FN_DYNAMIC_FRAME), function.isDynamic) << key;
    EXPECT_EQ(each->Is(FN_INDIRECT_CALL), function.isIndirect) << key;
    EXPECT_EQ(each->told && !each->told->indirectSites.empty(), function.isIndirect) << key;
    std::set<std::string> callees;
    for (const StkFunction* callee : each->callees) {
      EXPECT_TRUE(callees.insert(keyOf(*callee)).second) << key;
    }
    EXPECT_EQ(callees, function.callees) << key;
    std::set<std::string> below = literal.Below(key);
    EXPECT_EQ(each->Is(FN_RECURSIVE), recursive.contains(key)) << key;
    below.insert(key);
    ReasonSet reasons;
    bool meetsRecursion = false;
    for (const std::string& reached : below) {
      const LiteralBuild::Function& other = literal.functions.at(reached);
      meetsRecursion = meetsRecursion || recursive.contains(reached);
      if (!other.isDefined) {
        reasons.Add(ReasonKind::kUnknown);
      }
      if (other.isDynamic) {
        reasons.Add(ReasonKind::kDynamic);
      }
      if (other.isIndirect) {
        reasons.Add(ReasonKind::kIndirect);
      }
    }
    if (meetsRecursion) {
      reasons.Add(ReasonKind::kRecursion);
    } else {
      EXPECT_EQ(each->totalStackSize, literal.TotalOf(key)) << key;
      ++compared;
    }
    EXPECT_EQ(build.bounds->Reasons(*each), reasons) << key;
  }
  EXPECT_GT(compared, 20U);
}

TEST(GccInput, SaysOfTheSharedProgramsWhatALiteralReadingSays) {
  if (!fs::exists(Corpus())) {
    GTEST_SKIP() << Corpus() << " is not there";
  }
  const std::map<std::string, uint32_t> kVariadic = {{"luaL_error", 32},
                                                     {"lua_pushfstring", 32},
                                                     {"lua_gc", 40},
                                                     {"luaG_runerror", 32},
                                                     {"luaO_pushfstring", 24}};
  for (const char* name : {"lua/arm", "lua/native", "littlefs/arm", "littlefs/native"}) {
    SCOPED_TRACE(name);
    const bool isArm = std::string(name).ends_with("arm");
    BuildFolder build;
    build.PutAll(Corpus() / name);
    ASSERT_TRUE(build.Analyse());
    EXPECT_TRUE(build.notWhole.empty());
    EXPECT_EQ(build.CountNotes(""), 0U);
    Compare(build,
            isArm && std::string(name).starts_with("lua") ? kVariadic : decltype(kVariadic)(),
            isArm ? 0 : 128);
    EXPECT_EQ(build.input->GeneratorVersion().value_or(""), isArm ? "12.2.1" : "");
  }
}

TEST(GccInput, KeepsStaticFunctionsOfOneNameApart) {
  BuildFolder build;
  build.Put("d1/x.ci", CallGraph("x.c", {"x.c:helper 64", "one 8 x.c:helper"}));
  build.Put("d2/x.ci", CallGraph("x.c", {"x.c:helper 640", "two 8 x.c:helper helper"}));
  build.Put("y.ci", CallGraph("/src/y.c", {"/src/y.c:helper 8 one two *",
                                           "main 16 "
                                           "/src/y.c:helper"}));
  ASSERT_TRUE(build.Analyse());
  EXPECT_EQ(build["one"].totalStackSize, 72U);
  EXPECT_EQ(build["two"].totalStackSize, 648U);
  EXPECT_EQ(build.CalleesOf("two"), "x.c#helper [helper]");  // no static one of another file
  EXPECT_EQ(build["main"].totalStackSize, 16U + 8 + 648);
  std::vector<std::string> files;
  for (const StkFunction* each : build.functions->Functions()) {
    if (each->name == "helper" && each->file != nullptr) {
      files.push_back(each->file->name);
    }
  }
  EXPECT_EQ(files, (std::vector<std::string>{"d1/x.c", "d2/x.c", "/src/y.c"}));
  const SourceLine& site = build["y.c#helper"].told->indirectSites.front();
  EXPECT_EQ(site.file->name, "/src/y.c");
  EXPECT_EQ(site.line, 1U);
  EXPECT_EQ(site.column, 7U);
  EXPECT_EQ(build["two"].Place().line, 2U);
}

TEST(GccInput, CountsTheLargerOfTwoDefinitionsAndSaysSo) {
  BuildFolder build;
  build.Put("a.ci", CallGraph("a.c", {"main 16 f", "f 8 g", "g 4"}));
  build.Put("b.ci", CallGraph("b.c", {"main 32d h", "h 100 *"}));
  ASSERT_TRUE(build.Analyse());
  EXPECT_EQ(build["main"].frameSize, 32U);
  EXPECT_TRUE(build["main"].Is(FN_DYNAMIC_FRAME));
  EXPECT_EQ(build.CalleesOf("main"), "f h");
  EXPECT_EQ(build["main"].totalStackSize, 132U);
  EXPECT_EQ(build.CountNotes("main is defined more than once, in a.ci and in b.ci"), 1U);

  BuildFolder twice;
  twice.Put("a.c.ci", CallGraph("a.c", {"f 8"}));
  twice.Put("old/a.c.ci", CallGraph("a.c", {"f 16"}));
  ASSERT_TRUE(twice.Analyse());
  EXPECT_EQ(twice.CountNotes("f is defined more than once, in a.c.ci and in old/a.c.ci, of one "),
            1U);
}

TEST(GccInput, AFrameOverTheLimitTakesAllThatReachItOverIt) {
  BuildFolder build;
  build.Put("a.ci", CallGraph("a.c", {"main 16 f g", "f 3000000000", "g 2147483600 h", "h 48"}));
  ASSERT_TRUE(build.Analyse());
  EXPECT_EQ(build.CountNotes("The number after \"f\" is written \"3000000000\" and read as "
                             "2147483648."),
            1U);
  for (const char* name : {"main", "f", "g"}) {
    EXPECT_EQ(build.bounds->State(build[name]), BoundState::kOver) << name;
    EXPECT_EQ(build[name].totalStackSize, kOverSize) << name;
    EXPECT_GT(build.bounds->Known(build[name]), 2147483647U) << name;
  }
}

TEST(GccInput, SaysWhatIsNotWholeWithFileAndLineAndAnalysesTheRest) {
  const std::string whole = CallGraph("a.c", {"main 16 f", "f 8"});
  for (size_t cut = 0; cut < whole.size(); ++cut) {
    BuildFolder build;
    build.Put("a.ci", whole.substr(0, cut));
    build.Put("b.ci", CallGraph("b.c", {"other 8 main"}));
    ASSERT_TRUE(build.Analyse());
    const bool isWhole = cut + 1 >= whole.size();
    EXPECT_EQ(build.notWhole.size(), isWhole ? 0U : 1U) << cut;
    EXPECT_EQ(build.CountNotes("The call graph is not whole") != 0, !isWhole) << cut;
    EXPECT_EQ(build["other"].frameSize, 8U);
  }
  BuildFolder strange;
  strange.Put("a.ci",
              "graph: { title: \"a.c\"\nnode: { title: \"f\" label: \"f\\na.c:1:2\" }\n"
              "edge: { sourcename: \"g\" targetname: \"f\" }\nwhat\n}\n");
  ASSERT_TRUE(strange.Analyse());
  EXPECT_EQ(strange.CountNotes("not whole"), 3U);
  EXPECT_TRUE(strange["f"].Is(FN_SIZE_UNKNOWN));  // and no number that is too small
  BuildFolder nothing;
  nothing.Put("a.c", "");
  EXPECT_FALSE(nothing.Analyse());
  EXPECT_EQ(nothing.recorder.boxes.boxes.size(), 1U);
}

TEST(GccInput, TakesOfEachOutputTheNewestLinkAlone) {
  BuildFolder build;
  build.Put("p.ltrans0.ltrans.ci", CallGraph("/tmp/ccB.ltrans0.o", {"main 16 f.lto_priv.0"}));
  build.Put("p.ltrans1.ltrans.ci", CallGraph("/tmp/ccA.ltrans1.o", {"main 999"}));
  build.Put("p.ltrans2.ltrans.ci", CallGraph("/tmp/ccB.ltrans2.o", {"f.lto_priv.0 24"}));
  build.Put("q.lto.o-cc1.lto.ci", CallGraph("a.o", {"a.o:q 500"}));
  build.Put("q.lto.o-cc2.lto.ci", CallGraph("a.o", {"a.o:q 50"}));
  build.Put("p.ltrans3.ltrans.ci", "");
  build.host.files.SetModifiedAt("/b/p.ltrans3.ltrans.ci", 9);
  for (const char* name : {"p.ltrans0.ltrans.ci", "p.ltrans2.ltrans.ci", "q.lto.o-cc2.lto.ci"}) {
    build.host.files.SetModifiedAt("/b/"s + name, 2);
  }
  ASSERT_TRUE(build.Analyse());
  EXPECT_EQ(build["main"].totalStackSize, 40U);
  EXPECT_EQ(build.functions->Count(), 3U);
  EXPECT_EQ(build.notWhole.size(), 1U);
  EXPECT_EQ(build.CountNotes("2 call graph files of earlier links"), 1U);
}

TEST(GccInput, SaysThatASourceIsNewer) {
  BuildFolder build;
  build.Put("build/a.ci", CallGraph("src/a.c", {"main 16"}));
  build.Put("src/a.c", "int main;");
  build.host.files.SetModifiedAt("/b/src/a.c", 5);
  ASSERT_TRUE(build.Analyse("/b/build"));
  EXPECT_EQ(build.CountNotes("src/a.c is newer"), 1U);
}

TEST(GccInput, ReadsAVelkorToml) {
  BuildFolder build;
  build.Put("out/a.ci", CallGraph("a.c", {"main 16 f", "f 8 rec", "rec 8 rec"}));
  build.Put("out/tests/t.ci", CallGraph("t.c", {"main 900"}));
  build.Put("limits.txt", "rec, RECTIME=3\n");
  build.Put("velkor.toml",
            "schema = 1\ninput = \"out\"\nexclude = [\"tests/**\", \"none/*\"]\n"
            "load = [\"limits.txt\"]\nelf = \"no.elf\"\n[stack.main]\nentry = \"main\"\n"
            "size = 1024\n");
  ASSERT_TRUE(build.Analyse("/b/velkor.toml"));
  EXPECT_EQ(build["main"].frameSize, 16U);
  EXPECT_EQ(build.input->SystemFilePath(), "/b/velkor.psg");
  EXPECT_EQ(build.CountNotes("none/*"), 1U);
  EXPECT_EQ(build.CountNotes("could not be read"), 1U);
  const auto sources = build.input->BuildSpecSources();
  ASSERT_EQ(sources.size(), 2U);
  EXPECT_EQ(sources[0]->Path(), "/b/velkor.psg");
  EXPECT_EQ(sources[1]->Path(), "/b/limits.txt");

  build.Put("velkor.toml", "input = \"out\"\n[stack.a]\nentri = \"main\"\n");
  EXPECT_FALSE(build.Analyse("/b/velkor.toml"));
  ASSERT_EQ(build.recorder.boxes.boxes.size(), 1U);
  EXPECT_EQ(build.recorder.boxes.boxes[0].text,
            "E9303 Cannot read /b/velkor.toml, line 3, column 1: unknown key \"entri\"; near it: "
            "\"entry\".");
}

}  // namespace
}  // namespace velkor
