#include <QTextBrowser>
#include <gtest/gtest.h>

#include "platform/host_file_system.h"
#include "support/test_host.h"
#include "ui/help/help_location.h"
#include "ui/help/help_viewer.h"

namespace velkor::ui {
namespace {

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
    ASSERT_EQ(page.substr(0, 20), "@VELKOR_HELP_FOLDER@");
    for (const std::string folder : {"/src/resources/help/", "/src/resources/help/ja/"}) {
      EXPECT_TRUE(files.Exists(VELKOR_SOURCE_DIR + folder + page.substr(20))) << page;
    }
  }
}

TEST(HelpLocation, SettingsMayReferToTheLatestRevisionOfAnotherKey) {
  const auto located = [](const std::string& keys) {
    const std::string base = "[Software\\Orvane Tools\\ORVDEV\\";
    std::string text = base + "Tarn.VK\\1.0.0]\nHelp1=Help\\V1.00|x|Folder\n";
    for (const char key : keys) {
      text += base + "Help\\V1.00" + key + "]\nFolder=/pages" + key + "|rest\n";
    }
    return FindHelp(SettingsTree(CodePage::Utf8(), text), "1.0.0 (2026)").file;
  };
  EXPECT_EQ(located("acb"), "/pagesc");
  EXPECT_EQ(located(""), "");
}

TEST(HelpViewer, ShowsTheInstalledPageInTheUsersLanguageOrItsOwn) {
  for (const Language language : {Language::kEnglish, Language::kJapanese}) {
    testing::TestHost test;
    test.files.Put("/help/window.html", "<p>installed</p>");
    test.files.Put("/help/ja/window.html", "<p>installed ja</p>");
    const StkMessages texts = WindowMessages(test.codePage, language);
    HelpViewer viewer(test.host, texts, {"/help/", {"window.html", "none.html", "none.html"}},
                      language, "velkor");
    const auto* const page = viewer.findChild<QTextBrowser*>();
    viewer.ShowTopic(kMainWindowHelp);
    EXPECT_EQ(page->toPlainText(), language == Language::kEnglish ? "installed" : "installed ja");
    viewer.ShowTopic(kFunctionListsHelp);
    EXPECT_NE(page->toPlainText(), "");
  }
}

}  // namespace
}  // namespace velkor::ui
