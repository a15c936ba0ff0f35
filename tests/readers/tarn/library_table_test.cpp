#include "readers/tarn/library_table.h"

#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <sstream>

#include "files/paths.h"
#include "readers/tarn/spec_sources.h"
#include "support/recorder.h"
#include "support/test_host.h"

namespace velkor {
namespace {

using testing::Recorder;
using testing::TestHost;
using Texts = std::vector<std::string>;

class LibraryTableTest : public ::testing::Test {
 protected:
  static std::string Content(StkByteSource& source) {
    std::string content(source.Length(), '\0');
    content.resize(source.Read(content.data(), content.size()));
    return content;
  }
  // The built-in table of the kind.
  std::string BuiltIn(LibraryTableKind kind) {
    StkLibraryTable table(kind, project_, host_.host, recorder_.reporter);
    const std::unique_ptr<StkByteSource> source = table.Open({});
    EXPECT_NE(source, nullptr);
    return source == nullptr ? "" : Content(*source);
  }
  Texts Log() {
    recorder_.queue.Drain();
    return recorder_.log.lines;
  }

  TestHost host_;
  Recorder recorder_{host_.codePage};
  Event notStopped_{Event::Reset::kManual};
  StkProject project_{host_.host, recorder_.reporter};
};

// The sizes of a table by name; a line that states nothing is a comment.
std::map<std::string, uint32_t> SizesOf(const std::string& table) {
  static const std::regex line(R"(\[([^\]]+)\], ADD=(\d+))");
  std::map<std::string, uint32_t> sizes;
  std::istringstream lines(table);
  for (std::string text; std::getline(lines, text);) {
    std::smatch parts;
    const bool stated = std::regex_match(text, parts, line);
    EXPECT_TRUE(stated || text.starts_with('#')) << text;
    if (stated) {
      EXPECT_TRUE(sizes.emplace(parts[1], std::stoul(parts[2])).second) << text;
    }
  }
  return sizes;
}

// Changes with every name and every size.
uint32_t Digest(const std::map<std::string, uint32_t>& sizes) {
  uint32_t digest = 0;
  for (const auto& [name, size] : sizes) {
    for (const char c : name + '=') {
      digest = digest * 31 + static_cast<uint32_t>(c);
    }
    digest = digest * 31 + size;
  }
  return digest;
}

TEST_F(LibraryTableTest, BuiltInTables) {
  auto standard = SizesOf(BuiltIn(LibraryTableKind::kStandard));
  EXPECT_EQ(standard.size(), 133U);
  EXPECT_EQ(Digest(standard), 3709548033U);
  EXPECT_EQ(standard["scanf"], 294U);
  auto helpers = SizesOf(BuiltIn(LibraryTableKind::kRuntimeHelpers));
  EXPECT_EQ(helpers.size(), 135U);
  EXPECT_EQ(Digest(helpers), 3424823748U);
  EXPECT_EQ(helpers["@lsmul"], 7U);
}

TEST_F(LibraryTableTest, FileComesBeforeTheBuiltInTable) {
  host_.files.Put("C:\\data\\lt.txt", "# mine\n[memcpy], ADD=4\n");
  EXPECT_EQ(BuiltIn(LibraryTableKind::kStandard), "# mine\n[memcpy], ADD=4\n");
  EXPECT_EQ(Log(), Texts());
  host_.files.Refuse("C:\\data\\lt.txt");
  EXPECT_EQ(SizesOf(BuiltIn(LibraryTableKind::kStandard)).size(), 133U);
  EXPECT_EQ(Log(),
            Texts{"W9427 Cannot find stack size specification file for system library functions "
                  "(C:\\data\\lt.txt).\nDefault values (the same as lt.txt) are used."});
  EXPECT_EQ(recorder_.boxes.boxes.size(), 1U);
}

TEST_F(LibraryTableTest, NothingIsMissedWhereNoTablesAreInstalled) {
  host_.host.dataFolder.clear();
  EXPECT_EQ(SizesOf(BuiltIn(LibraryTableKind::kStandard)).size(), 133U);
  EXPECT_EQ(Log(), Texts());
  const StkLibraryTable table(LibraryTableKind::kStandard, project_, host_.host,
                              recorder_.reporter);
  host_.files.AddDirectory(std::string(DirectoryPart(table.Path(), host_.codePage)));
  BuiltIn(LibraryTableKind::kStandard);
  EXPECT_EQ(Log(), Texts{"W9427 Cannot find stack size specification file for system library "
                         "functions (" +
                         table.Path() + ").\nDefault values (the same as lt.txt) are used."});
}

// The built-in table stands in for the variants too, and is named as itself.
TEST_F(LibraryTableTest, VariantsAreReplacedByThePlainTable) {
  host_.files.Put("C:\\w\\app.prj",
                  "[ProjectManager]\nPath=C:\\w\n[Options.CCTarn 0]\nStaticmodelchk=1\n");
  ASSERT_TRUE(project_.Load("C:\\w\\app.prj"));
  EXPECT_EQ(SizesOf(BuiltIn(LibraryTableKind::kRuntimeHelpers)).size(), 135U);
  EXPECT_EQ(Log(),
            Texts{"W9427 Cannot find stack size specification file for system library functions "
                  "(C:\\data\\ltrsm.txt).\nDefault values (the same as ltr.txt) are used."});
}

TEST_F(LibraryTableTest, TheSizesComeFromTheTableOfTheNames) {
  AcceptedCompiler compiler{{1, 0x370}, {}};
  compiler.runtimeNames = LoadRuntimeNames(project_, host_.host, recorder_.reporter, notStopped_);
  host_.files.Put("C:\\data\\ltr.txt", "[@late], ADD=1\n");
  const auto sources = SpecSourcesOf(project_, compiler, host_.host, recorder_.reporter);
  ASSERT_FALSE(sources.empty());
  const std::unique_ptr<StkByteSource> helpers = sources.front()->Open({});
  ASSERT_NE(helpers, nullptr);
  EXPECT_EQ(SizesOf(Content(*helpers)).size(), 135U);
}

TEST_F(LibraryTableTest, HalfATableOfHelpersIsNone) {
  host_.files.Put("C:\\data\\ltr.txt", "[@half], ADD=1\n" + std::string(20000, '\n'));
  host_.files.FailAt(testing::FileOperation::kRead, 2);
  const RuntimeNameSet names =
      LoadRuntimeNames(project_, host_.host, recorder_.reporter, notStopped_);
  EXPECT_TRUE(names.builtIn);
  EXPECT_TRUE(names.Contains("@half") && names.Contains("@lsmul"));
}

TEST_F(LibraryTableTest, RuntimeNames) {
  host_.files.Put(
      "C:\\data\\ltr.txt",
      "[@ftols]\r \t@fmul , ADD=x\r\n\n  # [@comment]\n#[@comment], ADD=1\n,\n[], ADD=1\n"
      "[@fadd],ADD=1\n[@open\n\xE3\x80\x80[@wide]tail\n@a]b\n" +
          std::string(6000, 'l') + ",");
  const RuntimeNameSet names =
      LoadRuntimeNames(project_, host_.host, recorder_.reporter, notStopped_);
  for (const char* name : {"@ftols", "@fmul", "@fadd", "@open", "@wide", "@a]b"}) {
    EXPECT_TRUE(names.Contains(name)) << name;
  }
  EXPECT_TRUE(names.Contains(std::string(5119, 'l')));
  EXPECT_EQ(names.names.size(), 7U);
  EXPECT_FALSE(names.Contains("@FMUL"));
  EXPECT_EQ(Log(), Texts());
}

}  // namespace
}  // namespace velkor
