#include "ui/dialogs/file_dialogs.h"

#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QScreen>

#include "ui/dialogs/file_name_checks.h"

namespace velkor::ui {

namespace {

constexpr uint32_t kSpecFileFilter = 35006;
constexpr uint32_t kReportFilter = 35007;
constexpr uint32_t kPageFilter = 35008;
constexpr uint32_t kPictureFilter = 35009;
// One text of several, one a line; the fourth is the name of the filter, the fifth its extension.
constexpr uint32_t kProjectType = 128;
constexpr int kFilterLine = 3;
constexpr int kExtensionLine = 4;

// "Text (*.txt)|*.txt|Table (*.csv)|*.csv||" as the toolkit's name filters.
QStringList NameFilters(const QString& filter) {
  const QStringList parts = filter.split(u'|');
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size() && !parts[i].isEmpty(); i += 2) {
    const qsizetype bracket = parts[i].lastIndexOf(u'(');
    filters << parts[i].left(bracket).trimmed() + " (" + parts[i + 1] + ")";
  }
  return filters;
}

}  // namespace

std::optional<std::string> WindowFileDialogs::ProjectToOpen(UiContext& context, QWidget* parent) {
  const QStringList type = context.Text(kProjectType).split(u'\n');
  CFileOpenDlg dialog(context, parent);
  dialog.setFileMode(QFileDialog::ExistingFile);
  dialog.SetFilter(type.value(kFilterLine) + "|*" + type.value(kExtensionLine) +
                   "|velkor.toml|*.toml||");
  dialog.setDefaultSuffix(type.value(kExtensionLine));
  return Ask(dialog, context);
}

std::optional<std::string> WindowFileDialogs::FolderToOpen(UiContext& context, QWidget* parent) {
  CFolderOpenDlg dialog(context, parent);
  return Ask(dialog, context);
}

std::optional<std::string> WindowFileDialogs::SpecFileToLoad(UiContext& context, QWidget* parent) {
  CFileOpenDlg dialog(context, parent);
  dialog.SetFilter(context.Text(kSpecFileFilter));
  return Ask(dialog, context);
}

std::optional<std::string> WindowFileDialogs::SpecFileToSave(UiContext& context, QWidget* parent) {
  CFileSaveDlg dialog(context, parent);
  dialog.SetFilter(context.Text(kSpecFileFilter));
  return Ask(dialog, context);
}

std::optional<std::string> WindowFileDialogs::ReportToSave(UiContext& context, QWidget* parent) {
  CFileSaveDlg dialog(context, parent);
  dialog.SetFilter(context.Text(kReportFilter));
  return Ask(dialog, context);
}

std::optional<std::string> WindowFileDialogs::PageToSave(UiContext& context, QWidget* parent) {
  CFileSaveDlg dialog(context, parent);
  dialog.SetFilter(context.Text(kPageFilter));
  return Ask(dialog, context);
}

std::optional<std::string> WindowFileDialogs::PictureToSave(UiContext& context, QWidget* parent) {
  CFileSaveDlg dialog(context, parent);
  dialog.SetFilter(context.Text(kPictureFilter));
  dialog.setDefaultSuffix("svg");
  return Ask(dialog, context);
}

std::optional<std::string> WindowFileDialogs::Ask(CFileDialogEx& dialog, UiContext& context) {
  const std::string& project = context.document.PathName();
  if (project != project_ && project.starts_with('/')) {
    project_ = project;
    folder_ = QFileInfo(context.Decoded(project)).path();
  }
  if (!folder_.isEmpty()) {
    dialog.setDirectory(folder_);
  }
  std::optional<std::string> name = dialog.Ask();
  if (name) {
    folder_ = QFileInfo(QDir::cleanPath(dialog.selectedFiles().front())).path();
  }
  return name;
}

CFileDialogEx::CFileDialogEx(UiContext& context, AcceptMode mode, QWidget* parent)
    : QFileDialog(parent), context_(context) {
  setOption(DontUseNativeDialog);
  setOption(DontConfirmOverwrite);
  setAcceptMode(mode);
  setFileMode(AnyFile);
  setDefaultSuffix("txt");
}

void CFileDialogEx::SetFilter(const QString& filter) {
  setNameFilters(NameFilters(filter));
}

std::optional<std::string> CFileDialogEx::Ask() {
  // The toolkit's own size is too high for a small screen.
  resize(size().boundedTo(screen()->availableSize() * 9 / 10));
  return exec() == Accepted ? name_ : std::nullopt;
}

void CFileDialogEx::accept() {
  // The base class would take the name of a folder, without its path, for that of a file.
  auto* typed = findChild<QLineEdit*>("fileNameEdit");
  if (typed && !typed->text().isEmpty() && QFileInfo(directory(), typed->text()).isDir()) {
    setDirectory(directory().filePath(typed->text()));
    typed->clear();
    return;
  }
  const QStringList files = selectedFiles();
  if (files.isEmpty() || QFileInfo(files.front()).isDir() || TakeName(files.front())) {
    QFileDialog::accept();
  }
}

bool CFileDialogEx::TakeName(const QString& path) {
  name_ = Check(path);
  return name_.has_value();
}

CFileOpenDlg::CFileOpenDlg(UiContext& context, QWidget* parent)
    : CFileDialogEx(context, AcceptOpen, parent) {}

std::optional<std::string> CFileOpenDlg::Check(const QString& path) {
  return NameToOpen(path, context_);
}

CFolderOpenDlg::CFolderOpenDlg(UiContext& context, QWidget* parent)
    : CFileOpenDlg(context, parent) {
  setFileMode(Directory);
  setDefaultSuffix({});
  setOption(ShowDirsOnly, false);
}

void CFolderOpenDlg::accept() {
  const QStringList folders = selectedFiles();
  if (folders.isEmpty() || !QFileInfo(folders.front()).isDir() || TakeName(folders.front())) {
    // The class between would enter the folder. NOLINTNEXTLINE(bugprone-parent-virtual-call)
    QFileDialog::accept();
  }
}

CFileSaveDlg::CFileSaveDlg(UiContext& context, QWidget* parent)
    : CFileDialogEx(context, AcceptSave, parent) {}

std::optional<std::string> CFileSaveDlg::Check(const QString& path) {
  return NameToSave(path, context_);
}

}  // namespace velkor::ui
