#include <QDir>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "main_window.h"
#include "platform/local_machine.h"
#include "support/module_text.h"
#include "ui/dialogs/adjust_dialog.h"
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

void Put(const QString& path, const std::string& content) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(content.data(), static_cast<qint64>(content.size()));
}

std::string Get(const QString& path) {
  QFile file(path);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
  return file.readAll().toStdString();
}

// Into the next file dialog.
void Type(const QString& name) {
  QTimer::singleShot(0, [name] {
    auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    dialog->findChild<QLineEdit*>("fileNameEdit")->setText(name);
    static_cast<QDialog*>(dialog)->accept();
  });
}

void FinishJobs(CStkDoc& document) {
  ASSERT_TRUE(QTest::qWaitFor([&] {
    for (const JobKind kind : kJobKinds) {
      document.Finish(kind);
    }
    return !document.HasJobs();
  }));
}

// Every character here has a "\" in it in 932.
TEST(FileNamesOfAnotherCodePage, WhatIsTypedMeansItsFunctionAndFile) {
  const QTemporaryDir temporary;
  const QString folder = temporary.filePath("表ソ");
  ASSERT_TRUE(QDir().mkpath(folder));
  Put(folder + "/表.prj", "[ProjectManager]\nPath=C:\\p\n[SrcFile]\nSource1=a.c\n");
  Put(folder + "/a.asm", testing::ModuleText("a.c", {"main 10 \x94\x5C", "\x94\x5C 4"}));
  std::string error;
  const auto machine =
      LocalMachine::Create({.mappings = {}, .codePage = "932", .dataFolder = ""}, error);
  testing::Recorder recorder(machine->GetCodePage());
  NotificationQueue posted;
  CStkDoc document(machine->GetHost(), recorder.reporter, posted);
  UiContext context{machine->GetHost(), recorder.messages, recorder.reporter, document};
  WindowFileDialogs files;

  Type(folder + "/表.prj");
  const std::optional<std::string> project = files.ProjectToOpen(context, nullptr);
  ASSERT_TRUE(project && document.OnOpenDocument(*project));
  document.StartAnalysis();
  FinishJobs(document);
  StkFunction& main = *document.FunctionTable()->FindBySpecName("", "main", false);
  AdjustStackSizeDialog adjust(context, main, [](int) {});
  FunctionListBox& all = *adjust.findChildren<FunctionListBox*>()[1];
  all.keyboardSearch("能");
  ASSERT_NE(all.SelectedFunction(), nullptr);
  EXPECT_EQ(all.SelectedFunction()->name, "_\x94\x5C");
  QLineEdit& margin = *adjust.findChildren<QLineEdit*>()[2];
  margin.setText("表");
  adjust.accept();
  ASSERT_EQ(recorder.boxes.boxes.size(), 1U);
  EXPECT_EQ(context.Decoded(recorder.boxes.boxes.front().text),
            QString("W9462 Illegal value (表) for additional margin."));
  margin.setText("4");
  adjust.accept();
  ASSERT_TRUE(adjust.BuildAdjustment());
  ASSERT_TRUE(document.AdjustFunction(main, *adjust.BuildAdjustment()));
  FinishJobs(document);
  EXPECT_EQ(Get(folder + "/表.psg"), "main, ADD=4\r\n");

  Type("能.txt");
  const std::optional<std::string> saved = files.SpecFileToSave(context, nullptr);
  ASSERT_TRUE(saved && document.SaveSpecFile(*saved));
  FinishJobs(document);
  EXPECT_EQ(Get(folder + "/能.txt"), "main, ADD=4\r\n");
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

TEST_F(FileNames, AFolderIsChosenAndBeginsTheNextDialog) {
  const QTemporaryDir folder;
  ASSERT_TRUE(QDir(folder.path()).mkpath("firmware/build"));
  WindowFileDialogs files;
  Type(folder.filePath("firmware/build"));
  EXPECT_EQ(files.FolderToOpen(Context(), nullptr),
            folder.filePath("firmware/build").toStdString());
  Type("build");
  EXPECT_EQ(files.FolderToOpen(Context(), nullptr),
            folder.filePath("firmware/build").toStdString());
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
