#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

#include "main_window.h"
#include "ui/dialogs/file_name_checks.h"

namespace velkor::ui {
namespace {

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
}

TEST(FileNamesOfAnotherCodePage, EveryFileOfThisHostCanBeNamed) {
  testing::TestHost host(CodePage::Latin1());
  testing::Recorder recorder(host.codePage);
  NotificationQueue posted;
  CStkDoc document(host.host, recorder.reporter, posted);
  UiContext context{host.host, recorder.messages, recorder.reporter, document};
  EXPECT_EQ(NameToSave("/\u00E9", context), "/\xE9");
  const std::optional<std::string> name = NameToOpen("/\u00E9\u3042", context);
  ASSERT_TRUE(name);
  EXPECT_EQ(context.Decoded(*name), "/\u00E9\u3042");
  EXPECT_EQ(host.paths.ToHost(*name, Spelling::kExact).Bytes(), "/\u00E9\u3042");
}

TEST_F(FileNames, ANameThatIsRefusedLeavesTheDialogOpen) {
  const QTemporaryDir folder;
  const QString report = folder.filePath("report.txt");
  CFileSaveDlg dialog(Context(), nullptr);
  dialog.SetFilter("Text (*.txt)|*.txt||");
  dialog.setDirectory(folder.path());
  dialog.open();
  auto* name = dialog.findChild<QLineEdit*>();
  name->setText("report");
  host.files.Put(report.toStdString(), "old");
  boxes.answerWith = [](const auto&) { return BoxAnswer::kNo; };
  static_cast<QDialog&>(dialog).accept();
  EXPECT_EQ(BoxTexts(), "I9501 Do you want to overwrite it?|") << "with the default extension";
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(name->text(), "report");
  boxes.answerWith = [](const auto&) { return BoxAnswer::kYes; };
  static_cast<QDialog&>(dialog).accept();
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(dialog.selectedFiles(), QStringList(report));
}

}  // namespace
}  // namespace velkor::ui
