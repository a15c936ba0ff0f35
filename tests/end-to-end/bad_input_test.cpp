#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <rapidjson/document.h>
#include <sys/stat.h>
#include <unistd.h>

#include "program.h"
#include "scratch_folder.h"

namespace velkor {
namespace {

using testing::ModuleText;
using testing::Program;
using testing::ProgramRun;
using testing::ProjectText;
using testing::ScratchFolder;

ProgramRun Json(const std::string& project) {
  return Program({"analyze", project, "--format", "json"}).Run();
}

rapidjson::Document Parsed(const ProgramRun& run) {
  rapidjson::Document document;
  document.Parse<rapidjson::kParseValidateEncodingFlag>(run.out.data(), run.out.size());
  EXPECT_FALSE(document.HasParseError()) << run.err << run.out.substr(0, 1000);
  return document;
}

int64_t CountLines(const std::string& text, const std::string& part) {
  int64_t count = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

TEST(BadInput, WhatCannotBeOpenedIsReportedAndTheRestIsRead) {
  const ScratchFolder folder;
  folder.Put("main.asm", ModuleText("main.c", {{"main", "4", {}}}));
  std::filesystem::create_directory(folder.Path("folder.asm"));
  folder.Put("empty.asm", "");
  folder.Put("noise.asm", std::string("\0\xFF\r\n\x1A$DGS", 9));
  ASSERT_EQ(mkfifo(folder.Path("pipe.asm").c_str(), 0600), 0);
  std::string options = "[Options.CCTarn 0 folder.c]\nOutasmsrccmb0=folder.asm\\.\n";
  // The project file in the place of a module.
  options += "[Options.CCTarn 0 self.c]\nOutasmsrccmb0=app.prj\n";
  std::vector<std::string> sources = {"folder.c", "self.c", "empty.c", "noise.c", "pipe.c"};
  sources.push_back("main.c");
  const std::string project = folder.Put("app.prj", ProjectText(".", sources, options));
  const ProgramRun run = Json(project);
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(CountLines(run.err, " Reading aborted.\n"), static_cast<int64_t>(sources.size()) - 1)
      << run.err;
  const std::string kind = "W9432 Illegal format in assembler source module file (";
  EXPECT_TRUE(run.Says(kind + folder.Path("app.prj") + ":line 1). Check the file.")) << run.err;
  EXPECT_TRUE(run.Says(kind + folder.Path("empty.asm") + "). Check the file.")) << run.err;
  EXPECT_TRUE(run.Says("W9401 Cannot open file to read (" + folder.Path("pipe.asm") +
                       "). Check that the file is readable."))
      << run.err;
  EXPECT_EQ(Parsed(run)["functions"].Size(), 1U);
}

TEST(BadInput, NamesOfAnyBytes) {
  const ScratchFolder folder;
  const std::string directives = "%s%n%lu%.0s";
  const std::string control = "a\x01\x1B[31m\x7F\rb";
  const std::string invalid = "\xC3\x29\xFF\xED\xA0\x80";
  const std::string null("c\0d", 3);
  folder.Put("main.asm", ModuleText("%s%n.c", {{"main", "4", {directives, control, invalid}},
                                               {directives, "6", {}},
                                               {control, "8", {}},
                                               {invalid, "10", {}},
                                               {null, "12", {null}}}));
  const std::string project = folder.Put("app.prj", ProjectText(".", {"main.c"}));
  const std::string limits = folder.Put(
      "limits.txt", directives + ", ADD=1\n" + null + ", ADD=2\n" + invalid + "x, ADD=3\n");
  const ProgramRun run = Program({"analyze", project, "--format", "json", "--load", limits}).Run();
  const rapidjson::Document document = Parsed(run);
  ASSERT_GE(document["functions"].Size(), 4U) << run.err;
  const auto name = [&document](rapidjson::SizeType i) {
    const auto& text = document["functions"][i]["specName"];
    return std::string(text.GetString(), text.GetStringLength());
  };
  EXPECT_EQ(name(1), directives);
  EXPECT_EQ(name(2), control);
  EXPECT_EQ(name(3), "\uFFFD)\uFFFD\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(document["functions"][0]["totalStackSize"].GetInt(), 14);
  EXPECT_TRUE(run.Says("Stack size specification of " + directives +
                       " adjusted. Additional margin is set to 1."))
      << run.err;
  const std::string text = Program({"analyze", project}).Run().out;
  EXPECT_EQ(text.find('\x1B'), std::string::npos) << "a name gives the terminal no orders";
  EXPECT_EQ(text.find('\r'), std::string::npos);
}

TEST(BadInput, ALongChainIsShownByItsEnds) {
  const ScratchFolder folder;
  std::vector<testing::ModuleFunction> functions;
  for (int i = 0; i < 3000; ++i) {
    functions.push_back({"f" + std::to_string(i), "2", {"f" + std::to_string(i + 1)}});
  }
  functions.push_back({"f3000", "2", {"f2990"}});
  folder.Put("main.asm", ModuleText("main.c", functions));
  const std::string project = folder.Put("app.prj", ProjectText(".", {"main.c"}));
  const ProgramRun run = Program({"analyze", project}).Run();
  EXPECT_NE(run.out.find("... 2962 functions left out, --full shows them\n"), std::string::npos)
      << run.out.substr(0, 5000);
  EXPECT_NE(run.out.find("f2990*  (again)\n"), std::string::npos);
  EXPECT_NE(run.out.find("recursive without a depth: f2990, f2991, f2992, f2993, f2994, f2995, "
                         "f2996, f2997, f2998, f2999 and 1 more\n"),
            std::string::npos);
  const ProgramRun full = Program({"analyze", project, "--full"}).Run();
  EXPECT_EQ(full.out.find("left out"), std::string::npos);
  EXPECT_NE(full.out.find(" f1500\n"), std::string::npos);
}

}  // namespace
}  // namespace velkor
