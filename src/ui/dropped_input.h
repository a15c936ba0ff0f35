#pragma once

#include <QDropEvent>
#include <QMimeData>
#include <QString>

namespace velkor::ui {

// The one input that is being dragged, a file or a folder, or nothing.
QString DraggedProject(const QMimeData& data);

// What a source proposes may be a move: it would then delete the file.
void AcceptAsCopy(QDropEvent& event);

}  // namespace velkor::ui
