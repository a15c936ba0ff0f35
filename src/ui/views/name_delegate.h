#pragma once

#include <QStyledItemDelegate>

namespace velkor::ui {

// Draws a row's name as always and behind it, paler, what the row says of kBehindNameRole.
class NameDelegate : public QStyledItemDelegate {
 public:
  static constexpr int kBehindNameRole = Qt::UserRole + 1;

  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace velkor::ui
