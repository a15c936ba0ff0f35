#include "ui/dropped_input.h"

#include <QFileInfo>
#include <QList>
#include <QUrl>

namespace velkor::ui {

QString DraggedProject(const QMimeData& data) {
  const QList<QUrl> urls = data.urls();
  const QString path = urls.size() == 1 ? urls.front().toLocalFile() : QString();
  const bool isInput = path.endsWith(".prj", Qt::CaseInsensitive) || path.endsWith(".toml") ||
                       QFileInfo(path).isDir();
  return isInput ? path : QString();
}

void AcceptAsCopy(QDropEvent& event) {
  event.setDropAction(Qt::CopyAction);
  event.accept();
}

}  // namespace velkor::ui
