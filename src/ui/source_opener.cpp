#include "ui/source_opener.h"

#include <QDesktopServices>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>

#include "files/paths.h"

namespace velkor::ui {

namespace {

// Where the file is on this host: the path of a module may begin at the folder of the input.
QString FileOnHost(UiContext& context, const std::string& path) {
  const CodePage& codePage = context.host.codePage;
  const std::string whole =
      AbsoluteAgainst(path, DirectoryPart(context.document.PathName(), codePage), context.host);
  return QFile::decodeName(QByteArray::fromStdString(context.host.paths.HostName(whole)));
}

}  // namespace

CommandLine EditorCommandLine(const QString& command, const QString& file, uint32_t line) {
  CommandLine words = QProcess::splitCommand(command);
  bool isNamed = false;
  for (QString& word : words) {
    isNamed = isNamed || word.contains("{file}");
    // The file last: its name may hold a "{line}".
    word.replace("{line}", QString::number(line == 0 ? 1 : line)).replace("{file}", file);
  }
  if (!isNamed && !words.isEmpty()) {
    words.push_back(file);
  }
  return words;
}

bool OpenSource(UiContext& context, const QString& command, const std::string& path,
                uint32_t line) {
  const QString file = FileOnHost(context, path);
  if (!QFileInfo(file).isFile()) {
    return false;
  }
  CommandLine words = EditorCommandLine(command, file, line);
  if (words.isEmpty()) {
    return QDesktopServices::openUrl(QUrl::fromLocalFile(file));
  }
  const QString program = words.takeFirst();
  return QProcess::startDetached(program, words);
}

}  // namespace velkor::ui
