#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

#include "main_window.h"
#include "ui/about_box.h"
#include "ui/file_name_checks.h"

namespace velkor {
namespace {

using testing::MainWindow;

class FileNames : public MainWindow {
 protected:
  UiContext& Context() { return app->Context(); }
};

TEST_F(FileNames, PathsOverTheLimitAreRefusedInEveryDialog) {
  const QString longest = "/" + QString(254, u'n');
  EXPECT_TRUE(NameToOpen(longest, Context())) << "its reader reports that it is missing";
  EXPECT_TRUE(NameToSave(longest, Context()));
  EXPECT_EQ(BoxTexts(), "");
  const std::string message = "W9407 Too long file name (" + longest.toStdString() + "n).";
  EXPECT_FALSE(NameToOpen(longest + 'n', Context()));
  EXPECT_FALSE(NameToSave(longest + 'n', Context()));
  EXPECT_EQ(BoxTexts(), message + "\nThe limit is 255.|" + message + "\nThe limit is 255.|");
  EXPECT_EQ(Log(), message + " The limit is 255.\n" + message + " The limit is 255.\n");
  // Bytes count, not letters.
  EXPECT_FALSE(NameToOpen("/" + QString(127, QChar(0x3042)), Context()));
}

TEST(FileNamesOfAnotherCodePage, ANameThatItCannotSpellIsRefused) {
  testing::TestHost host(CodePage::Latin1());
  testing::Recorder recorder(host.codePage);
  PostedMessages posted;
  CStkDoc document(host.host, recorder.reporter, posted);
  UiContext context{host.host, recorder.messages, recorder.reporter, document};
  EXPECT_EQ(NameToSave(QString(QChar(0xE9)), context), "\xE9");
  EXPECT_FALSE(NameToSave(QString(QChar(0x3042)), context));
  EXPECT_FALSE(NameToOpen(QString(QChar(0x3042)), context));
  ASSERT_EQ(recorder.boxes.boxes.size(), 2U);
  EXPECT_TRUE(recorder.boxes.boxes[0].text.starts_with("W9402 "));
  EXPECT_TRUE(recorder.boxes.boxes[1].text.starts_with("W9401 "));
}

TEST(FileFilters, BecomeThoseOfTheToolkit) {
  EXPECT_EQ(NameFilters("Text Format Output Result (*.txt)|*.txt|CSV (*.csv)|*.csv||"),
            QStringList({"Text Format Output Result (*.txt)", "CSV (*.csv)"}));
  EXPECT_EQ(NameFilters("Plain|*.x||"), QStringList("Plain (*.x)"));
  EXPECT_EQ(NameFilters(""), QStringList());
}

class FileDialogWindows : public FileNames {
 protected:
  QString InFolder(const QString& name) const { return QDir(folder.path()).filePath(name); }
  static void Type(QFileDialog& dialog, const QString& name) {
    dialog.findChild<QLineEdit*>()->setText(name);
  }
  static void Confirm(QFileDialog& dialog) { static_cast<QDialog&>(dialog).accept(); }

  QTemporaryDir folder;
};

TEST_F(FileDialogWindows, ANameThatIsRefusedLeavesTheDialogOpen) {
  CFileSaveDlg dialog(Context(), nullptr);
  dialog.SetFilter("Text (*.txt)|*.txt||");
  dialog.setDirectory(folder.path());
  dialog.open();
  Type(dialog, "report");
  host.files.Put(InFolder("report.txt").toStdString(), "old");
  boxes.answerWith = [](const auto&) { return BoxAnswer::kNo; };
  Confirm(dialog);
  EXPECT_EQ(BoxTexts(), "I9501 Do you want to overwrite it?|") << "with the default extension";
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(dialog.findChild<QLineEdit*>()->text(), "report");
  boxes.answerWith = [](const auto&) { return BoxAnswer::kYes; };
  Confirm(dialog);
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(dialog.selectedFiles(), QStringList(InFolder("report.txt")));
}

TEST_F(FileDialogWindows, AboutShowsNameAndVersion) {
  CAboutBox about(Context(), {"velkor", "1.0.0 (date)"});
  EXPECT_EQ(about.windowTitle(), "About velkor");
  EXPECT_EQ(about.findChild<QLabel*>("1015")->text(),
            "Stack Size Analysis for Tarn Firmware\nvelkor 1.0.0 (date)");
}

}  // namespace
}  // namespace velkor
