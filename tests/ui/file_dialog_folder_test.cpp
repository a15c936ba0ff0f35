#include <QDir>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTimer>

#include "main_window.h"

namespace velkor::ui {
namespace {

class FileDialogFolder : public MainWindow {
 protected:
  // The folder in which the dialog of a report begins; then it takes the name, or is cancelled.
  QString BeginsIn(const QString& name) {
    QString begin;
    QTimer::singleShot(0, [&] {
      auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      begin = dialog->directory().path();
      dialog->findChild<QLineEdit*>("fileNameEdit")->setText(name);
      name.isEmpty() ? dialog->reject() : static_cast<QDialog*>(dialog)->accept();
    });
    fileDialogs.ReportToSave(app->Context(), nullptr);
    return begin;
  }

  WindowFileDialogs fileDialogs;
};

TEST_F(FileDialogFolder, ItIsThatOfTheProjectAndThenTheLastOne) {
  const QTemporaryDir folder;
  ASSERT_TRUE(QDir(folder.path()).mkdir("reports"));
  const QString reports = folder.filePath("reports");
  const std::string project = folder.filePath("app.prj").toStdString();
  host.files.Put(project, "[ProjectManager]\nPath=C:\\p\n[SrcFile]\nSource1=a.c\n");
  ASSERT_TRUE(Document().OnOpenDocument(project));
  EXPECT_EQ(BeginsIn(""), folder.path());
  EXPECT_EQ(BeginsIn(reports + "/all.txt"), folder.path());
  EXPECT_EQ(BeginsIn(""), reports);
  ASSERT_TRUE(Document().OnOpenDocument(kProject));
  EXPECT_EQ(BeginsIn(""), reports);
}

}  // namespace
}  // namespace velkor::ui
