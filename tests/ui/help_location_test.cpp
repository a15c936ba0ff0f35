#include "ui/help_location.h"

#include <gtest/gtest.h>

#include "platform/host_file_system.h"
#include "support/test_host.h"

namespace velkor {
namespace {

using testing::TestHost;

// The file path and the three topics that settings lead to. "@" in the text begins the name of a
// key below the base key.
std::string Located(std::string text, std::string_view version) {
  for (size_t at = text.find('@'); at != std::string::npos; at = text.find('@', at)) {
    text.replace(at, 1, "[Software\\Orvane Tools\\ORVDEV");
  }
  const HelpLocation found = FindHelp(SettingsTree(CodePage::Utf8(), text), version);
  return found.file + "," + found.topics[0] + "," + found.topics[1] + "," + found.topics[2];
}

TEST(HelpLocation, ReadsTheKeyOfTheVersionAsFarAsItGoes) {
  const std::string topics = "HelpTopic1=one\nHelpTopic2=two\nHelpTopic3=three\n";
  const std::string longText(519, 'x');
  const struct {
    std::string values;  // of the version's key, and further keys
    const char* located;
  } cases[] = {
      {topics + "Help1=file:/h/", "file:/h/,one,two,three"},
      {topics + "Help1=C:\\h.chm|rest|more", "C:\\h.chm,one,two,three"},
      {"HelpTopic1=one\nHelpTopic3=three\nHelp1=a:b", "a:b,one,,"},  // up to the first missing one
      {"HelpTopic1=\nHelpTopic2=two\n", ",,two,"},
      {topics, ",one,two,three"},
      {topics + "Help1=:" + longText, ",one,two,three"},  // does not fit
      // A reference to another key.
      {"Help1=Help\\V1.00|x|Folder\n@\\Help\\V1.00]\nFolder=/pages/|rest", "/pages/,,,"},
      {"Help1=Help\\V1.00|x|Folder\n@\\Help\\V1.00]\nOther=/pages/", ",,,"},
      {"Help1=Help\\V1.00|x|Folder\n", ",,,"},
      {"Help1=Same\n@\\Same]\nSame=/x", "/x,,,"},  // without a bar one text is both
  };
  for (const auto& each : cases) {
    EXPECT_EQ(Located("@\\Tarn.VK\\1.0.0]\n" + each.values, "1.0.0 (2026)"), each.located)
        << each.values;
  }
  EXPECT_EQ(Located("@\\Tarn.VK\\1.0.1]\nHelp1=a:b", "1.0.0 (2026)"), ",,,");
  EXPECT_EQ(Located("@\\Tarn.VK]\nHelp1=a:b", "1.0.0"), "a:b,,,")
      << "without a blank the version word is empty";
}

TEST(HelpLocation, TakesTheLatestRevisionBesideAMissingKey) {
  const auto located = [](const std::vector<std::string>& keys) {
    std::string text = "@\\Tarn.VK\\1.0.0]\nHelp1=Help\\V1.00|Folder\n";
    for (const std::string& key : keys) {
      text += "@\\Help\\" + key + "]\nFolder=" + key + "\n";
    }
    return Located(text, "1.0.0 (2026)");
  };
  EXPECT_EQ(located({"V1.00a", "V1.00c", "V1.00b", "V2.00z", "V1.00zz"}), "V1.00c,,,");
  EXPECT_EQ(located({"V1.00Z", "V1.00a"}), "V1.00a,,,");
  EXPECT_EQ(located({"V1.00\xFF", "V1.001"}), "V1.001,,,") << "such a byte counts as below none";
  EXPECT_EQ(located({"V1.00\xFF"}), ",,,");
  EXPECT_EQ(located({"v1.00b"}), "v1.00b,,,");
  EXPECT_EQ(located({"W1.00b", "V1.00a"}), ",,,") << "the better one is not there under V";
  EXPECT_EQ(located({"W1.00b", "V1.00b"}), "V1.00b,,,");
}

TEST(HelpLocation, JoinsPathAndTopicAndResolvesThem) {
  const HelpLocation location{"..\\dattarn\\help\\", {"a.html", "b.html", ""}};
  EXPECT_EQ(location.Page(kFunctionListsHelp), "..\\dattarn\\help\\b.html");
  EXPECT_EQ(location.Page(kAdjustHelp), "..\\dattarn\\help\\");
  TestHost test;
  const std::string program = test.paths.ExecutablePath();
  const std::string folder = program.substr(0, program.rfind('/'));
  const std::string above = folder.substr(0, folder.rfind('/'));
  EXPECT_EQ(HelpPath(location.Page(1), test.host), above + "/dattarn/help/a.html");
  EXPECT_EQ(HelpPath("file:/usr/share/a.html", test.host), "/usr/share/a.html");
  EXPECT_EQ(HelpPath("C:\\help\\a.html", test.host), "C:\\help\\a.html");
  test.files.Put(above + "/dattarn/help.ini", "[Software]\nv=1\n");
  EXPECT_TRUE(InstallationSettings(test.host).Open("Software"));
}

// The settings that are shipped lead to the pages that are shipped.
TEST(HelpLocation, ShippedSettingsNameTheShippedPages) {
  const CodePage codePage = CodePage::Utf8();
  const HostPaths paths(codePage);
  HostFileSystem files{paths};
  const auto opened =
      files.OpenForRead(std::string(VELKOR_SOURCE_DIR) + "/src/resources/help/help.ini");
  ASSERT_TRUE(opened.file);
  const HelpLocation location =
      FindHelp(SettingsTree(codePage, *opened.file), "@VELKOR_VERSION_WORD@ (date)");
  for (const int topic : {kMainWindowHelp, kFunctionListsHelp, kAdjustHelp}) {
    const std::string page = location.Page(topic);
    ASSERT_EQ(page.substr(0, 16), "..\\dattarn\\help\\");
    for (const std::string folder : {"/src/resources/help/", "/src/resources/help/ja/"}) {
      EXPECT_TRUE(files.Exists(VELKOR_SOURCE_DIR + folder + page.substr(16))) << page;
    }
  }
}

}  // namespace
}  // namespace velkor
