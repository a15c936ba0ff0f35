#include "readers/library_table.h"

#include <charconv>
#include <gtest/gtest.h>
#include <map>

#include "files/text_reader.h"
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
    const std::unique_ptr<StkByteSource> source = table.Open();
    EXPECT_NE(source, nullptr);
    return source == nullptr ? "" : Content(*source);
  }
  Texts Log() {
    recorder_.queue.Drain();
    return recorder_.log.lines;
  }

  TestHost host_;
  Recorder recorder_{host_.codePage};
  StkProject project_{host_.host, recorder_.reporter};
};

struct TableFigures {
  size_t comments = 0;
  std::map<std::string, uint32_t> sizes;
  std::vector<std::string> wrong;
};

TableFigures FiguresOf(const std::string& table) {
  TableFigures figures;
  EXPECT_EQ(table.find('\r'), std::string::npos);
  EXPECT_TRUE(table.ends_with('\n'));
  StkMemorySource source(table);
  StkTextReader reader(source);
  TextLine line;
  while (reader.ReadLine(line, 5120)) {
    const std::string_view text = line.text;
    if (text.starts_with('#')) {
      ++figures.comments;
      continue;
    }
    const size_t close = text.find("], ADD=");
    uint32_t size = 0;
    const bool whole =
        text.starts_with('[') && close != std::string_view::npos &&
        std::from_chars(text.data() + close + 7, text.data() + text.size(), size).ptr ==
            text.data() + text.size();
    if (!whole || !figures.sizes.emplace(text.substr(1, close - 1), size).second) {
      figures.wrong.emplace_back(text);
    }
  }
  return figures;
}

uint32_t Sum(const TableFigures& figures) {
  uint32_t sum = 0;
  for (const auto& [name, size] : figures.sizes) {
    sum += size;
  }
  return sum;
}

TEST_F(LibraryTableTest, BuiltInTables) {
  TableFigures standard = FiguresOf(BuiltIn(LibraryTableKind::kStandard));
  EXPECT_EQ(standard.wrong, Texts());
  EXPECT_EQ(standard.comments, 3U);
  EXPECT_EQ(standard.sizes.size(), 133U);
  EXPECT_EQ(Sum(standard), 2183U);
  EXPECT_EQ(standard.sizes["scanf"], 294U);
  EXPECT_EQ(standard.sizes["_toupper"], 0U);
  EXPECT_EQ(standard.sizes["__assertfail"], 64U);
  EXPECT_EQ(standard.sizes.count("qsort"), 0U);

  TableFigures helpers = FiguresOf(BuiltIn(LibraryTableKind::kRuntimeHelpers));
  EXPECT_EQ(helpers.wrong, Texts());
  EXPECT_EQ(helpers.comments, 49U);
  EXPECT_EQ(helpers.sizes.size(), 135U);
  EXPECT_EQ(Sum(helpers), 567U);
  EXPECT_EQ(helpers.sizes["@finc"], 26U);
  EXPECT_EQ(helpers.sizes["@lsmul"], 7U);
  EXPECT_EQ(helpers.sizes["@_hn4dp"], 11U);
  EXPECT_EQ(helpers.sizes.count("@cprep2"), 0U);
}

TEST_F(LibraryTableTest, FileComesBeforeTheBuiltInTable) {
  host_.files.Put("C:\\data\\lt.txt", "# mine\n[memcpy], ADD=4\n");
  EXPECT_EQ(BuiltIn(LibraryTableKind::kStandard), "# mine\n[memcpy], ADD=4\n");
  EXPECT_EQ(Log(), Texts());
  host_.files.Refuse("C:\\data\\lt.txt");
  EXPECT_EQ(FiguresOf(BuiltIn(LibraryTableKind::kStandard)).sizes.size(), 133U);
  EXPECT_EQ(Log(),
            Texts{"W9427 Cannot find stack size specification file for system library functions "
                  "(C:\\data\\lt.txt).\nDefault values (the same as lt.txt) are used."});
  EXPECT_EQ(recorder_.boxes.boxes.size(), 1U);
}

// The built-in table stands in for the variants too, and is named as itself.
TEST_F(LibraryTableTest, VariantsAreReplacedByThePlainTable) {
  host_.files.Put("C:\\w\\app.prj",
                  "[ProjectManager]\nPath=C:\\w\n[Options.CCTarn 0]\nStaticmodelchk=1\n");
  ASSERT_TRUE(project_.Load("C:\\w\\app.prj"));
  EXPECT_EQ(FiguresOf(BuiltIn(LibraryTableKind::kRuntimeHelpers)).sizes.size(), 135U);
  EXPECT_EQ(Log(),
            Texts{"W9427 Cannot find stack size specification file for system library functions "
                  "(C:\\data\\ltrsm.txt).\nDefault values (the same as ltr.txt) are used."});
}

class NoResources : public ResourceStore {
 public:
  std::optional<std::string_view> Find(std::string_view /*type*/, uint32_t /*id*/) const override {
    return std::nullopt;
  }
};

class ProgramInFolder : public HostPaths {
 public:
  ProgramInFolder(const CodePage& page, std::string program)
      : HostPaths(page), program_(std::move(program)) {}
  std::string ExecutablePath() const override { return program_; }

 private:
  std::string program_;
};

TEST_F(LibraryTableTest, FolderOfTheTables) {
  const auto pathOf = [this](const std::string& dataFolder, const std::string& program) {
    ProgramInFolder paths(host_.codePage, program);
    Host host{host_.codePage, host_.files, paths, host_.resources, dataFolder};
    return StkLibraryTable(LibraryTableKind::kStandard, project_, host, recorder_.reporter).Path();
  };
  EXPECT_EQ(pathOf("", "C:\\T\\bin\\velkor.exe"), "C:\\T\\dattarn\\lt.txt");
  EXPECT_EQ(pathOf("", "/opt/velkor/bin/velkor"), "/opt/velkor/dattarn/lt.txt");
  EXPECT_EQ(pathOf("/srv/tables/", "C:\\T\\bin\\velkor.exe"), "/srv/tables/lt.txt");
  EXPECT_EQ(pathOf("D:\\tables", "C:\\T\\bin\\velkor.exe"), "D:\\tables\\lt.txt");
}

TEST_F(LibraryTableTest, WithoutAnyTable) {
  const NoResources none;
  Host host{host_.codePage, host_.files, host_.paths, none, "C:\\data"};
  StkLibraryTable table(LibraryTableKind::kStandard, project_, host, recorder_.reporter);
  EXPECT_EQ(table.Open(), nullptr);
  EXPECT_EQ(Log().size(), 1U);
  LoadRuntimeNameSet(project_, host, recorder_.reporter);
  EXPECT_TRUE(project_.runtimeNames.loaded);
  EXPECT_EQ(project_.runtimeNames.names.size(), 0U);
  EXPECT_EQ(Log().size(), 1U);
}

TEST_F(LibraryTableTest, RuntimeNames) {
  host_.files.Put(
      "C:\\data\\ltr.txt",
      "[@ftols]\r \t@fmul , ADD=x\r\n\n  # [@comment]\n#[@comment], ADD=1\n,\n[], ADD=1\n"
      "[@fadd],ADD=1\n[@open\n\xE3\x80\x80[@wide]tail\n@a]b\n" +
          std::string(6000, 'l') + ",");
  LoadRuntimeNameSet(project_, host_.host, recorder_.reporter);
  const RuntimeNameSet& names = project_.runtimeNames;
  for (const char* name : {"@ftols", "@fmul", "@fadd", "@open", "@wide", "@a]b"}) {
    EXPECT_TRUE(names.Contains(name)) << name;
  }
  EXPECT_TRUE(names.Contains(std::string(5119, 'l')));
  EXPECT_EQ(names.names.size(), 7U);
  EXPECT_FALSE(names.Contains("@FMUL"));
  EXPECT_EQ(Log(), Texts());
}

TEST_F(LibraryTableTest, RuntimeNamesOfTheBuiltInTableComeQuietly) {
  LoadRuntimeNameSet(project_, host_.host, recorder_.reporter);
  EXPECT_EQ(project_.runtimeNames.names.size(), 135U);
  EXPECT_TRUE(project_.runtimeNames.Contains("@bcall"));
  EXPECT_FALSE(project_.runtimeNames.Contains("@cprep2"));
  EXPECT_EQ(Log(), Texts());
}

}  // namespace
}  // namespace velkor
