#include "ui/views/row_selection.h"

#include <QItemSelectionModel>

namespace velkor::ui {

void SelectedRowDelegate::initStyleOption(QStyleOptionViewItem* option,
                                          const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  option->state &= ~QStyle::State_HasFocus;
}

bool SelectCurrent(QAbstractItemView& view, QKeyEvent& press) {
  const bool moves =
      press.key() == Qt::Key_Down || press.key() == Qt::Key_Up || press.key() == Qt::Key_Home;
  const QModelIndex current = view.currentIndex();
  if (!moves || !current.isValid() || view.selectionModel()->hasSelection()) {
    return false;
  }
  view.selectionModel()->select(current,
                                QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  press.accept();
  return true;
}

}  // namespace velkor::ui
