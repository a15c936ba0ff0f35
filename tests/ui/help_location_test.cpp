#include "ui/help_location.h"

#include <gtest/gtest.h>

#include "platform/host_file_system.h"
#include "support/test_host.h"

namespace velkor {
namespace {

using testing::TestHost;

constexpr std::string_view kBase = "[Software\\Orvane Tools\\ORVDEV";
constexpr std::string_view kTopics = "HelpTopic1=one\nHelpTopic2=two\nHelpTopic3=three\n";

// The file path and the three topics that settings below the base key lead to. "@" in the text
// begins the name of a key.
std::string Located(std::string text, std::string_view version = "1.0.0 (2026)") {
  for (size_t at = text.find('@'); at != std::string::npos; at = text.find('@', at)) {
    text.replace(at, 1, kBase);
  }
  const HelpLocation found = FindHelp(SettingsTree(CodePage::Utf8(), text), version);
  return found.file + "," + found.topics[0] + "," + found.topics[1] + "," + found.topics[2];
}

std::string OfVersion(std::string_view values) {
  return "@\\Tarn.VK\\1.0.0]\n" + std::string(values);
}

TEST(HelpLocation, ReadsTheKeyOfTheVersionAsFarAsItGoes) {
  const std::string topics(kTopics);
  EXPECT_EQ(Located(OfVersion(topics + "Help1=file:/h/")), "file:/h/,one,two,three");
  EXPECT_EQ(Located(OfVersion(topics + "Help1=C:\\h.chm|rest|more")), "C:\\h.chm,one,two,three");
  EXPECT_EQ(Located(OfVersion("HelpTopic1=one\nHelpTopic3=three\nHelp1=a:b")), "a:b,one,,")
      << "stops at the first topic that is missing, but reads the path";
  EXPECT_EQ(Located(OfVersion("HelpTopic1=\nHelpTopic2=two\n")), ",,two,");
  EXPECT_EQ(Located(OfVersion(topics)), ",one,two,three");
  EXPECT_EQ(Located(OfVersion("Help1=:" + std::string(519, 'x'))), ",,,")
      << "does not fit the buffer";
  EXPECT_EQ(Located("@\\Tarn.VK\\1.0.1]\n" + topics + "Help1=a:b"), ",,,");
  EXPECT_EQ(Located("@\\Tarn.VK]\nHelp1=a:b", "1.0.0"), "a:b,,,")
      << "without a blank the version word is empty";
  EXPECT_EQ(Located("@\\Tarn.VK]\nHelp1=a:b"), ",,,") << "the version's own key is needed";
}

TEST(HelpLocation, FollowsAReferenceToAnotherKey) {
  const std::string version = OfVersion("HelpTopic1=t\nHelp1=Help\\V1.00|x|Folder\n");
  EXPECT_EQ(Located(version + "@\\Help\\V1.00]\nFolder=/pages/|rest"), "/pages/,t,,");
  EXPECT_EQ(Located(version + "@\\Help\\V1.00]\nOther=/pages/"), ",t,,");
  EXPECT_EQ(Located(version), ",t,,") << "no such key, and none beside it";
  EXPECT_EQ(Located(OfVersion("Help1=Same") + "\n@\\Same]\nSame=/x"), "/x,,,")
      << "without a bar one text is both";
}

TEST(HelpLocation, TakesTheLatestRevisionBesideAMissingKey) {
  const auto located = [](std::string_view keys) {
    std::string text = OfVersion("Help1=Help\\V1.00|Folder\n");
    for (const char key : keys) {
      text += std::string("@\\Help\\V1.00") + key + "]\nFolder=" + key + "\n";
    }
    return Located(text + "@\\Help\\V2.00z]\nFolder=other\n@\\Help\\V1.00zz]\nFolder=longer\n");
  };
  EXPECT_EQ(located("acb"), "c,,,");
  EXPECT_EQ(located("Za"), "a,,,");
  EXPECT_EQ(located("\xFF"
                    "1"),
            "1,,,")
      << "a byte above 127 counts as below none";
  EXPECT_EQ(located("\xFF"), ",,,");
  EXPECT_EQ(located(""), ",,,");
}

TEST(HelpLocation, OpensTheRevisionUnderTheLetterV) {
  const std::string version = OfVersion("Help1=Help\\V1.00|Folder\n");
  EXPECT_EQ(Located(version + "@\\Help\\v1.00b]\nFolder=small"), "small,,,");
  EXPECT_EQ(Located(version + "@\\Help\\W1.00b]\nFolder=w\n@\\Help\\V1.00a]\nFolder=a"), ",,,")
      << "the better one is not there under V";
  EXPECT_EQ(Located(version + "@\\Help\\W1.00b]\nFolder=w\n@\\Help\\V1.00b]\nFolder=v"), "v,,,");
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
