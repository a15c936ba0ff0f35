#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include "program.h"
#include "scratch_folder.h"

namespace velkor {
namespace {

using testing::ModuleFunction;
using testing::ModuleText;
using testing::Program;
using testing::ProgramRun;
using testing::ProjectText;
using testing::ScratchFolder;

// A ring of two functions that is entered at both: main calls a, a calls b, b calls a, isr calls b.
// Each round of the one may hold two of the other.
class RingOfTwoEntries : public ::testing::TestWithParam<bool> {
 protected:
  RingOfTwoEntries() {
    const ModuleFunction main{"main", "10", {"a"}};
    const ModuleFunction isr{"isr", "5", {"b"}};
    std::vector<ModuleFunction> functions = {MainFirst() ? main : isr, MainFirst() ? isr : main};
    functions.push_back({"a", "100", {"b"}});
    functions.push_back({"b", "20", {"a"}});
    folder_.Put("ring.asm", ModuleText("ring.c", functions));
    folder_.Put("app.psg", "a, RECTIME=2\nb, RECTIME=2\n");
    project_ = folder_.Put("app.prj", ProjectText(".", {"ring.c", "gone.c"}));
  }
  static bool MainFirst() { return GetParam(); }
  // As the functions are walked: only the entry that comes first finds the whole ring.
  static std::string TotalOfMain() { return MainFirst() ? "290" : "210"; }
  static std::string TotalOfIsr() { return MainFirst() ? "45" : "445"; }

  ProgramRun Run(const std::string& command, std::vector<std::string> more) const {
    std::vector<std::string> arguments = {command, project_};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return Program(arguments).Run();
  }
  static rapidjson::Document Parsed(const ProgramRun& run) {
    rapidjson::Document document;
    document.Parse(run.out.c_str());
    EXPECT_FALSE(document.HasParseError()) << run.err << run.out;
    return document;
  }

  ScratchFolder folder_;
  std::string project_;
};

INSTANTIATE_TEST_SUITE_P(, RingOfTwoEntries, ::testing::Bool());

TEST_P(RingOfTwoEntries, HasTheSameBoundsInEveryFormatAndOrder) {
  const ProgramRun csv = Run("analyze", {"--format", "csv"});
  EXPECT_EQ(csv.status, 1) << "a module is missing";
  for (const std::string& row : {"main," + TotalOfMain() + ",10,,ring.c,yes,no,490,bounded,490\n",
                                 "isr," + TotalOfIsr() + ",5,,ring.c,yes,no,485,bounded,485\n"}) {
    EXPECT_NE(csv.out.find(row), std::string::npos) << csv.out;
  }
  const std::string rows =
      "       400                 100    a*  *2  (4 times 100)\n"
      "        80                  20    b*  *2  (4 times 20)\n";
  const std::string main = "       490       " + TotalOfMain() + "        10  main\n" +
                           "        10                  10    main\n" + rows + "\n";
  const std::string isr = std::string("       485") + (MainFirst() ? "        45" : "       445") +
                          "         5  isr\n" + "         5                   5    isr\n" + rows;
  const std::string note =
      "2 functions of one recursion state a depth of 2 or more, which multiply: a, b. State 1 at "
      "all "
      "but one if its rounds are counted there. [nested-depths]";
  const ProgramRun text = Run("analyze", {});
  EXPECT_NE(text.out.find(main + isr), std::string::npos) << text.out;
  EXPECT_NE(text.out.find("\nNotes: 1\n  " + note + "\n"), std::string::npos) << text.out;
  EXPECT_TRUE(text.out.starts_with("Project ")) << text.out;
  EXPECT_NE(text.out.find("Bounded    2 of the top-level ones\n"
                          "Too low    the totals of 2 of them: below the bound\n"),
            std::string::npos)
      << text.out;
  const ProgramRun explained = Run("explain", {"isr"});
  EXPECT_TRUE(explained.out.starts_with("State      bounded\n")) << explained.out;
  EXPECT_NE(explained.out.find(isr), std::string::npos) << explained.out;
  const std::string chains = folder_.Path("chains.txt");
  for (const ProgramRun& run :
       {text, explained, csv, Run("chains", {"main", "--output", chains}), Run("reset", {"main"}),
        Run("save", {"--output", folder_.Path("saved.txt")}), Run("adjust", {"isr"}),
        Run("load", {folder_.Put("none.txt", "")})}) {
    EXPECT_TRUE(run.Says("note: " + note)) << run.err;
    EXPECT_EQ(run.status, 1) << "for the missing module alone";
  }
}

TEST_P(RingOfTwoEntries, IsTheSameForPrograms) {
  const rapidjson::Document json = Parsed(Run("analyze", {"--format", "json"}));
  EXPECT_EQ(json["schema"].GetInt(), 2);
  EXPECT_EQ(json["inputs"]["modules"].GetInt(), 2);
  EXPECT_EQ(json["inputs"]["read"].GetInt(), 1);
  EXPECT_EQ(json["inputs"]["missing"][0].GetString(), folder_.Path("gone.asm"));
  EXPECT_EQ(json["warnings"].Size(), 1U);
  EXPECT_STREQ(json["warnings"][0]["code"].GetString(), "W9431");
  EXPECT_TRUE(std::string(json["warnings"][0]["text"].GetString()).starts_with("Cannot find "));
  EXPECT_EQ(json["warnings"][0]["file"].GetString(), folder_.Path("gone.asm"));
  EXPECT_TRUE(json["warnings"][0]["line"].IsNull());
  EXPECT_STREQ(json["notes"][0]["rule"].GetString(), "nested-depths");
  EXPECT_EQ(json["groups"][0]["activations"].GetInt(), 4);
  for (const auto& function : json["functions"].GetArray()) {
    const std::string name = function["statement"].GetString();
    EXPECT_EQ(function["bound"].GetInt(), name == "main" ? 490 : name == "isr" ? 485 : 480) << name;
    EXPECT_FALSE(function["complete"].GetBool()) << name;
  }
  const rapidjson::Document explained = Parsed(Run("explain", {"main", "--format", "json"}));
  EXPECT_EQ(explained["value"].GetInt(), 490);
  ASSERT_EQ(explained["rows"].Size(), 3U);
  EXPECT_TRUE(explained["rows"][0]["group"].IsNull());
  EXPECT_EQ(explained["rows"][1]["bytes"].GetInt(), 400);
  EXPECT_EQ(explained["rows"][2]["times"].GetInt(), 4);
  EXPECT_EQ(explained["rows"][2]["group"].GetInt(), 0);
}

}  // namespace
}  // namespace velkor
