#pragma once

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QStyledItemDelegate>

namespace velkor::ui {

// Of views in which one row at most is selected, with the keyboard on it. Before, the toolkit gives
// the keyboard to the first row, which must not look as if it were selected.

// Draws no focus of its own on any row.
class SelectedRowDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

// Without a selection, a key that moves to a row selects the one that has the keyboard. Whether
// the key press did that; then there is nothing more to it.
bool SelectCurrent(QAbstractItemView& view, QKeyEvent& press);

}  // namespace velkor::ui
