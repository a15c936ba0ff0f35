#include <filesystem>
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include "program.h"
#include "scratch_folder.h"

namespace velkor {
namespace {

using testing::ModuleText;
using testing::Program;
using testing::ProgramRun;
using testing::ProjectText;
using testing::ScratchFolder;

class Diff : public ::testing::Test {
 protected:
  Diff() {
    old_ = Put("old", "24");
    new_ = Put("new", "236");
    json_ = folder_.Put("old.json", Json(old_).out);
  }

  std::string Put(const std::string& name, const std::string& frame) {
    folder_.Put(name + "/a.asm",
                ModuleText("a.c", {{"main", "8", {"parse"}}, {"parse", frame, {}}}));
    return folder_.Put(name + "/app.prj", ProjectText(".", {"a.c"}));
  }
  static ProgramRun Json(const std::string& project) {
    return Program({"analyze", project, "--format", "json"}).Run();
  }
  static ProgramRun Run(const std::vector<std::string>& arguments) {
    return Program({"diff"}, arguments).Run();
  }

  ScratchFolder folder_;
  std::string old_, new_, json_;
};

TEST_F(Diff, TakesAnalysesAndInputsInEachPlace) {
  const std::string rows =
      "\n\n    Before     After    Change  Function\n"
      "        32       244      +212  main: grew\n\n"
      "Why\n  main +212: parse 24 → 236, by main → parse\n";
  const std::string newJson = folder_.Put("new.json", " \n" + Json(new_).out);
  for (const std::string& before : {old_, json_}) {
    for (const std::string& after : {new_, newJson}) {
      const ProgramRun run = Run({before, after});
      EXPECT_EQ(run.status, 0) << run.err;
      EXPECT_TRUE(run.out.starts_with("Stack: 1 grew (")) << run.out;
      EXPECT_TRUE(run.out.ends_with(rows)) << run.out;
    }
  }
  EXPECT_EQ(Run({old_, json_}).out, "Stack: nothing changed (" + old_ + " → " + json_ + ")\n");
  const ProgramRun loaded =
      Run({json_, old_, "--load", folder_.Put("limits.txt", "parse, ADD=100\n")});
  EXPECT_NE(loaded.out.find("+100"), std::string::npos) << loaded.out;
  rapidjson::Document document;
  document.Parse(Run({json_, new_, "--format", "json"}).out.c_str());
  EXPECT_EQ(document["functions"][0]["new"]["bound"].GetInt(), 244);
  EXPECT_EQ(document["causes"][0]["path"].Size(), 2U);
  EXPECT_TRUE(Run({json_, new_, "--format", "markdown"}).out.starts_with("### Stack: 1 grew"));
}

TEST_F(Diff, WhatCannotBeComparedIsNamedAndPrintsNothing) {
  const std::string json = testing::ReadFile(json_);
  const std::string cut = folder_.Put("cut.json", json.substr(0, json.size() / 2));
  std::string schema = json;
  schema.replace(schema.find("\"schema\": 2"), 11, "\"schema\": 9");
  const std::string other = folder_.Put("schema.json", schema);
  const std::string foreign = folder_.Put("foreign.json", "{\"a\": 1}");
  folder_.Put("far/a.asm", ModuleText("a.c", {{"start", "8", {}}}));
  const std::string far = folder_.Put("far/app.prj", ProjectText(".", {"a.c"}));
  const std::pair<std::string, std::string> wrong[] = {
      {cut, cut + " is cut short or no JSON: see byte " + std::to_string(json.size() / 2)},
      {other, other + " holds JSON of schema 9, and schema 2 is read"},
      {foreign, foreign + " holds no analysis of velkor"},
      {folder_.Path("none.json"), ""},
      {far, json_ + " and " + far + " have no function in common: they are not of one program"}};
  for (const auto& [path, message] : wrong) {
    const ProgramRun run = Run({json_, path});
    EXPECT_EQ(run.status, 3) << path;
    EXPECT_EQ(run.out, "") << path;
    EXPECT_TRUE(message.empty() || run.Says("velkor-cli: " + message + ".")) << run.err;
    EXPECT_EQ(Run({path, json_}).status, 3) << path;
  }
  EXPECT_EQ(Run({json_}).status, 2);
  EXPECT_EQ(Run({json_, json_, "--format", "csv"}).status, 2);
  EXPECT_EQ(Run({json_, new_, "--output", json_}).status, 4);
  EXPECT_EQ(testing::ReadFile(json_), json);
}

TEST_F(Diff, WhatIsNotReadWholeOnEitherSideIsStatusOne) {
  folder_.Put("new/app.prj", ProjectText(".", {"a.c", "gone.c"}));
  EXPECT_EQ(Run({json_, new_}).status, 1);
  EXPECT_EQ(Run({new_, json_}).status, 1);
}

}  // namespace
}  // namespace velkor
