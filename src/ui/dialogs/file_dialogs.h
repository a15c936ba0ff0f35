#pragma once

#include <QFileDialog>
#include <optional>
#include <string>

#include "ui/ui_context.h"

namespace velkor::ui {

// Asks the user for files and folders. Each answers the path in the code page, or none when the
// user cancels. User-interface thread.
class FileDialogs {
 public:
  virtual ~FileDialogs() = default;
  virtual std::optional<std::string> ProjectToOpen(UiContext& context, QWidget* parent) = 0;
  virtual std::optional<std::string> FolderToOpen(UiContext& context, QWidget* parent) = 0;
  virtual std::optional<std::string> SpecFileToLoad(UiContext& context, QWidget* parent) = 0;
  virtual std::optional<std::string> SpecFileToSave(UiContext& context, QWidget* parent) = 0;
  virtual std::optional<std::string> ReportToSave(UiContext& context, QWidget* parent) = 0;
  virtual std::optional<std::string> PageToSave(UiContext& context, QWidget* parent) = 0;
  virtual std::optional<std::string> PictureToSave(UiContext& context, QWidget* parent) = 0;
};

class CFileDialogEx;

// The toolkit's dialogs. The first for a project begins in the project's folder, each after it
// where the last file was chosen.
class WindowFileDialogs : public FileDialogs {
 public:
  std::optional<std::string> ProjectToOpen(UiContext& context, QWidget* parent) override;
  std::optional<std::string> FolderToOpen(UiContext& context, QWidget* parent) override;
  std::optional<std::string> SpecFileToLoad(UiContext& context, QWidget* parent) override;
  std::optional<std::string> SpecFileToSave(UiContext& context, QWidget* parent) override;
  std::optional<std::string> ReportToSave(UiContext& context, QWidget* parent) override;
  std::optional<std::string> PageToSave(UiContext& context, QWidget* parent) override;
  std::optional<std::string> PictureToSave(UiContext& context, QWidget* parent) override;

 private:
  std::optional<std::string> Ask(CFileDialogEx& dialog, UiContext& context);

  std::string project_;
  QString folder_;
};

// A file dialog with a check of its own when the user confirms a name; a name that does not pass
// leaves the dialog open. Not the desktop's own dialog, which would be gone by then.
class CFileDialogEx : public QFileDialog {
 public:
  CFileDialogEx(UiContext& context, AcceptMode mode, QWidget* parent);

  // filter: descriptions and patterns, each ended by "|".
  void SetFilter(const QString& filter);
  // Modal. The checked name, or none.
  std::optional<std::string> Ask();

 protected:
  void accept() override;
  virtual std::optional<std::string> Check(const QString& path) = 0;
  // False: it does not pass.
  bool TakeName(const QString& path);

  UiContext& context_;

 private:
  std::optional<std::string> name_;
};

class CFileOpenDlg : public CFileDialogEx {
 public:
  CFileOpenDlg(UiContext& context, QWidget* parent);

 protected:
  std::optional<std::string> Check(const QString& path) override;
};

// Of a folder; the files in it are shown.
class CFolderOpenDlg : public CFileOpenDlg {
 public:
  CFolderOpenDlg(UiContext& context, QWidget* parent);

 protected:
  void accept() override;
};

class CFileSaveDlg : public CFileDialogEx {
 public:
  CFileSaveDlg(UiContext& context, QWidget* parent);

 protected:
  std::optional<std::string> Check(const QString& path) override;
};

}  // namespace velkor::ui
