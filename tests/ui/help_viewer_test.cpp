#include "ui/help_viewer.h"

#include <QDialog>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>
#include <gtest/gtest.h>

#include "platform/host_file_system.h"
#include "support/test_host.h"
#include "ui/help_pages.h"

namespace velkor {
namespace {

using testing::TestHost;

struct Viewer {
  explicit Viewer(HelpLocation location, Language language = Language::kEnglish)
      : texts(WindowMessages(test.codePage, language)),
        window(test.host, texts, std::move(location), language, "velkor") {}

  std::string Title() const { return window.ShownText().section('\n', 0, 0).toStdString(); }
  std::string Topic(int topic) {
    window.ShowTopic(topic);
    return Title();
  }

  TestHost test;
  StkMessages texts;
  HelpViewer window;
};

const HelpLocation kInstalled{"/help/", {"window.html", "l.html", "a.html"}};

TEST(HelpViewer, ShowsItsOwnPagesWithoutALocation) {
  Viewer english({});
  EXPECT_EQ(english.window.windowTitle(), "velkor Help");
  EXPECT_EQ(english.Topic(kMainWindowHelp), "The main window");
  Viewer nowhere({"/nowhere/", {"a", "b", "c"}});
  EXPECT_EQ(nowhere.Topic(kFunctionListsHelp), "Stack Size Unknown / Adjusted Function Lists");
}

TEST(HelpViewer, ShowsTheInstalledPageInTheUsersLanguage) {
  for (const Language language : {Language::kEnglish, Language::kJapanese}) {
    Viewer viewer(kInstalled, language);
    viewer.test.files.Put("/help/window.html", "<p>installed</p><a href='l.html'>lists</a>");
    viewer.test.files.Put("/help/ja/window.html", "<p>installed ja</p>");
    viewer.test.files.Put("/help/l.html", "<p>lists</p>");
    EXPECT_EQ(viewer.Topic(kMainWindowHelp),
              language == Language::kEnglish ? "installed" : "installed ja");
    EXPECT_EQ(viewer.Topic(kFunctionListsHelp), "lists");
  }
}

TEST(HelpViewer, EveryLinkOfAPageLeadsToAPage) {
  for (const Language language : {Language::kEnglish, Language::kJapanese}) {
    Viewer viewer({}, language);
    auto* browser = viewer.window.findChild<QTextBrowser*>();
    for (int topic = 1; topic <= kHelpTopicCount; ++topic) {
      const std::string title = viewer.Topic(topic);
      const std::string page(EmbeddedHelpPage(HelpPageName(topic), language));
      int links = 0;
      for (size_t at = page.find("href=\""); at != std::string::npos;
           at = page.find("href=\"", at + 1)) {
        const size_t start = at + 6;
        const std::string target = page.substr(start, page.find('"', start) - start);
        browser->setSource(QUrl(QString::fromStdString(target)));
        EXPECT_NE(viewer.Title(), "") << target;
        EXPECT_NE(viewer.Title(), title) << target;
        EXPECT_EQ(viewer.Topic(topic), title);
        ++links;
      }
      EXPECT_EQ(links, 2) << title;
    }
  }
}

TEST(HelpViewer, IsUsableBesideAModalDialog) {
  Viewer viewer({});
  viewer.window.ShowTopic(kMainWindowHelp);
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&viewer.window));
  // As from the system, which asks whether the window is blocked.
  const auto close = [&] {
    const QPushButton* button = viewer.window.findChild<QPushButton*>();
    QTest::mouseClick(viewer.window.windowHandle(), Qt::LeftButton, Qt::NoModifier,
                      button->geometry().center());
  };
  {
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));
    close();
    EXPECT_TRUE(viewer.window.isVisible()) << "the dialog keeps it from being used";
    viewer.window.ShowTopic(kAdjustHelp);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&viewer.window));
    EXPECT_EQ(viewer.Title(), "Adjust Stack Size");
    close();
    EXPECT_FALSE(viewer.window.isVisible());
    viewer.window.ShowTopic(kAdjustHelp);
  }
  EXPECT_TRUE(viewer.window.isVisible()) << "outlives the dialog";
  viewer.window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&viewer.window));
  QTest::keyClick(&viewer.window, Qt::Key_Escape);
  EXPECT_FALSE(viewer.window.isVisible());
  EXPECT_EQ(viewer.Topic(kMainWindowHelp), "The main window");
}

}  // namespace
}  // namespace velkor
